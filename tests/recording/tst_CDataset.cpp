// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "MetaObjectTable.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

class tst_CDataset : public QObject
{
    Q_OBJECT

private slots:
    void surface()
    {
        using namespace MetaObjectTable;
        VERIFY_NO_DIFFERENCE(compareProperties(
            CDataset::staticMetaObject, {{"Comment", "QString", ReadWrite},
                                         {"ResultsCount", "qulonglong", ReadWrite},
                                         {"Cleared", "bool", ReadWrite},
                                         {"MeasurementParameters", "CMeasurementParameters*", ReadWrite},
                                         {"InstrumentName", "QString", ReadWrite},
                                         {"Date", "QString", ReadWrite},
                                         {"FilePath", "QString", ReadWrite}}));
        VERIFY_NO_DIFFERENCE(
            compareMethods(CDataset::staticMetaObject, QMetaMethod::Signal,
                           {"CommentChanged(QString)", "ResultsCountChanged(qulonglong)",
                            "ClearedChanged(bool)", "MeasurementParametersChanged(CMeasurementParameters*)",
                            "InstrumentNameChanged(QString)", "DateChanged(QString)",
                            "FilePathChanged(QString)", "MeasurementParametersUpdated(CUnits::UnitType)"}));
        VERIFY_NO_DIFFERENCE(compareMethods(CDataset::staticMetaObject, QMetaMethod::Slot,
                                            {"OnMeasurementParametersUpdated()"}));
    }

    void startsEmpty()
    {
        QCOMPARE(m_dataset.ResultsCount(), quint64(0));
        QVERIFY(!m_dataset.Cleared());
        QVERIFY(m_dataset.Comment().isEmpty());
        QVERIFY(m_dataset.InstrumentName().isEmpty());
        QVERIFY(m_dataset.Date().isEmpty());
        QVERIFY(m_dataset.FilePath().isEmpty());
        QVERIFY(!m_dataset.MeasurementParameters());
        QCOMPARE(&m_dataset.SettingsRef, &m_settings);
    }

    void settersEmitOnlyOnChange()
    {
        for (const char* property : {"Comment", "InstrumentName", "Date", "FilePath"}) {
            CDataSetMeasurement dataset(m_settings);
            const QMetaProperty meta =
                dataset.metaObject()->property(dataset.metaObject()->indexOfProperty(property));
            QSignalSpy spy(&dataset, meta.notifySignal());
            QVERIFY(dataset.setProperty(property, QStringLiteral("text")));
            QVERIFY(dataset.setProperty(property, QStringLiteral("text")));
            QCOMPARE(spy.count(), 1);
            QCOMPARE(spy[0][0].toString(), QStringLiteral("text"));
        }
        QSignalSpy countSpy(&m_dataset, &CDataset::ResultsCountChanged);
        m_dataset.SetResultsCount(5);
        m_dataset.SetResultsCount(5);
        QCOMPARE(countSpy.count(), 1);
        QCOMPARE(countSpy[0][0].toULongLong(), 5ULL);
    }

    void clearedAndParametersEmitAlways()
    {
        CDataSetMeasurement dataset(m_settings);
        QSignalSpy cleared(&dataset, &CDataset::ClearedChanged);
        dataset.SetCleared(true);
        dataset.SetCleared(true);
        QCOMPARE(cleared.count(), 2);

        CMeasurementParameters parameters;
        parameters.SetUnits(CUnits::GAUSS);
        QSignalSpy changed(&dataset, &CDataset::MeasurementParametersChanged);
        QSignalSpy updated(&dataset, &CDataset::MeasurementParametersUpdated);
        dataset.SetMeasurementParameters(&parameters);
        dataset.SetMeasurementParameters(&parameters);
        QCOMPARE(changed.count(), 2);
        QCOMPARE(updated.count(), 2);
        QCOMPARE(updated[0][0].value<CUnits::UnitType>(), CUnits::GAUSS);
    }

    void withoutParametersNothingIsUpdated()
    {
        CDataSetMeasurement dataset(m_settings);
        QSignalSpy updated(&dataset, &CDataset::MeasurementParametersUpdated);
        dataset.SetMeasurementParameters(nullptr);
        dataset.OnMeasurementParametersUpdated();
        QCOMPARE(updated.count(), 0);
    }

    void loadedParametersOutliveTheirReplacementUntilTheEventLoop()
    {
        QPointer<CMeasurementParameters> first;
        QPointer<CMeasurementParameters> second;
        CMeasurementParameters live;
        {
            CDataSetMeasurement dataset(m_settings);
            auto owned = std::make_unique<CMeasurementParameters>();
            first = owned.get();
            dataset.AdoptMeasurementParameters(std::move(owned));
            QCOMPARE(dataset.MeasurementParameters(), first.data());
            QVERIFY(!first->parent());

            dataset.SetMeasurementParameters(&live);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(first);

            owned = std::make_unique<CMeasurementParameters>();
            second = owned.get();
            dataset.AdoptMeasurementParameters(std::move(owned));
            QCOMPARE(dataset.MeasurementParameters(), second.data());
            QVERIFY(first);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!first);
            QVERIFY(second);
        }
        QVERIFY(!second);
    }

    void retiredParametersGoWithTheDataset()
    {
        QPointer<CMeasurementParameters> first;
        {
            CDataSetMeasurement dataset(m_settings);
            auto owned = std::make_unique<CMeasurementParameters>();
            first = owned.get();
            dataset.AdoptMeasurementParameters(std::move(owned));
            dataset.AdoptMeasurementParameters(std::make_unique<CMeasurementParameters>());
            QVERIFY(first);
        }
        QVERIFY(!first);
    }

private:
    CSettings m_settings{QString()};
    CDataSetMeasurement m_dataset{m_settings};
};

QTEST_GUILESS_MAIN(tst_CDataset)
#include "tst_CDataset.moc"
