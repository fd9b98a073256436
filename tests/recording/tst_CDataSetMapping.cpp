// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMapping.h"
#include "CSettings.h"
#include "MetaObjectTable.h"
#include "RecordTestSupport.h"

#include <QSignalSpy>
#include <QtTest>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace RecordTestSupport;

class tst_CDataSetMapping : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QObject::disconnect(&m_parameters, nullptr, &m_parameters, nullptr);
        m_parameters.SetBlockSize(10);
        m_settings.SetMappingMaxMeasurementCount(1000000);
    }

    void surface()
    {
        using namespace MetaObjectTable;
        VERIFY_NO_DIFFERENCE(compareProperties(
            CDataSetMapping::staticMetaObject,
            {{"MeasureBlocks", "std::deque<QSharedPointer<CMeasureBlockMapping> >*", Constant}}));
    }

    void countsBlocks()
    {
        CDataSetMapping dataset(m_settings);
        dataset.SetMeasurementParameters(&m_parameters);
        QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(10));
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(3));
        QCOMPARE(dataset.ResultsCount(), quint64(2));
        QCOMPARE(count.count(), 2);
    }

    void limitIsSamplesDividedByBlockSize()
    {
        m_settings.SetMappingMaxMeasurementCount(39); // 3 blocks of 10
        CDataSetMapping dataset(m_settings);
        dataset.SetMeasurementParameters(&m_parameters);
        for (int i = 0; i < 3; ++i)
            dataset.AddBlock(blockOf<CMeasureBlockMapping>(1));
        QCOMPARE(dataset.ResultsCount(), quint64(3));
        QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
        const auto newest = blockOf<CMeasureBlockMapping>(1);
        dataset.AddBlock(newest);
        QCOMPARE(dataset.ResultsCount(), quint64(3));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(3));
        QCOMPARE(dataset.MeasureBlocks()->back(), newest);
        QCOMPARE(count.count(), 2);
        QCOMPARE(count[0][0].toULongLong(), 4ULL);
        QCOMPARE(count[1][0].toULongLong(), 3ULL);
    }

    void limitBelowTheBlockSizeKeepsOneBlock()
    {
        m_settings.SetMappingMaxMeasurementCount(9);
        CDataSetMapping dataset(m_settings);
        dataset.SetMeasurementParameters(&m_parameters);
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(10));
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(10));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(1));
        QCOMPARE(dataset.ResultsCount(), quint64(1));
    }

    void withoutBlockSizeNothingIsCountedOrDropped()
    {
        m_settings.SetMappingMaxMeasurementCount(1);
        for (const int blockSize : {0, -1}) {
            m_parameters.SetBlockSize(blockSize);
            CDataSetMapping dataset(m_settings);
            dataset.SetMeasurementParameters(&m_parameters);
            QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
            for (int i = 0; i < 20; ++i)
                dataset.AddBlock(blockOf<CMeasureBlockMapping>(10));
            QCOMPARE(dataset.MeasureBlocks()->size(), size_t(20));
            QCOMPARE(dataset.ResultsCount(), quint64(0));
            QCOMPARE(count.count(), 0);
        }
    }

    void withoutParametersTheBlockIsKept()
    {
        CDataSetMapping dataset(m_settings);
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(10));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(1));
        QCOMPARE(dataset.ResultsCount(), quint64(0));
    }

    void clearTellsInItsOrder()
    {
        CDataSetMapping dataset(m_settings);
        dataset.SetMeasurementParameters(&m_parameters);
        dataset.AddBlock(blockOf<CMeasureBlockMapping>(1));
        dataset.SetComment(QStringLiteral("c"));
        QStringList told;
        connect(&dataset, &CDataset::CommentChanged, &dataset, [&] { told << QStringLiteral("Comment"); });
        connect(&dataset, &CDataset::FilePathChanged, &dataset, [&] { told << QStringLiteral("FilePath"); });
        connect(&dataset, &CDataset::InstrumentNameChanged, &dataset,
                [&] { told << QStringLiteral("InstrumentName"); });
        connect(&dataset, &CDataset::DateChanged, &dataset, [&] { told << QStringLiteral("Date"); });
        connect(&dataset, &CDataset::ResultsCountChanged, &dataset,
                [&] { told << QStringLiteral("ResultsCount"); });
        connect(&dataset, &CDataset::ClearedChanged, &dataset, [&] { told << QStringLiteral("Cleared"); });
        dataset.Clear();
        QCOMPARE(told.join(QLatin1Char(' ')),
                 QStringLiteral("Comment InstrumentName Date FilePath ResultsCount Cleared"));
        QVERIFY(dataset.MeasureBlocks()->empty());
        told.clear();
        dataset.Clear();
        QCOMPARE(told.join(QLatin1Char(' ')), QStringLiteral("InstrumentName Date FilePath Cleared"));
    }

#ifdef __GLIBC__
    void clearGivesTheStorageBack()
    {
        CDataSetMapping dataset(m_settings);
        const auto usedMemory = [] {
            const struct mallinfo2 info = mallinfo2();
            return info.uordblks + info.hblkhd;
        };
        const size_t before = usedMemory();
        dataset.MeasureBlocks()->resize(1000000);
        dataset.Clear();
        QVERIFY2(usedMemory() < before + 50000, QByteArray::number(quint64(usedMemory() - before)));
    }
#endif

private:
    CSettings m_settings{QString()};
    CMeasurementParameters m_parameters;
};

QTEST_GUILESS_MAIN(tst_CDataSetMapping)
#include "tst_CDataSetMapping.moc"
