// SPDX-License-Identifier: GPL-3.0-or-later
#include "CDataSetMeasurement.h"
#include "CSettings.h"
#include "MetaObjectTable.h"
#include "RecordTestSupport.h"

#include <QSignalSpy>
#include <QtTest>

#ifdef __GLIBC__
#include <malloc.h>
#endif

using namespace RecordTestSupport;

class tst_CDataSetMeasurement : public QObject
{
    Q_OBJECT

private slots:
    void surface()
    {
        using namespace MetaObjectTable;
        VERIFY_NO_DIFFERENCE(
            compareProperties(CDataSetMeasurement::staticMetaObject,
                              {{"MeasureBlocks", "std::deque<QSharedPointer<CMeasureBlock> >*", Constant}}));
    }

    void countsSamplesAndKeepsTheObjects()
    {
        CDataSetMeasurement dataset(m_settings);
        QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
        const auto first = blockOf(3);
        const auto empty = blockOf(0);
        const auto last = blockOf(2);
        dataset.AddBlock(first);
        dataset.AddBlock(empty);
        dataset.AddBlock(last);
        QCOMPARE(dataset.ResultsCount(), quint64(5));
        QCOMPARE(count.count(), 2);
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(3));
        QCOMPARE(dataset.MeasureBlocks()->at(0), first);
        QCOMPARE(dataset.MeasureBlocks()->at(1), empty);
        QCOMPARE(dataset.MeasureBlocks()->at(2), last);
    }

    void newestBlockStaysEvenBeyondTheLimit()
    {
        m_settings.SetMeasurementMaxMeasurementCount(1000);
        CDataSetMeasurement dataset(m_settings);
        dataset.AddBlock(blockOf(1500));
        QCOMPARE(dataset.ResultsCount(), quint64(1500));
        const auto newest = blockOf(1500);
        QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
        dataset.AddBlock(newest);
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(1));
        QCOMPARE(dataset.MeasureBlocks()->front(), newest);
        QCOMPARE(dataset.ResultsCount(), quint64(1500));
        QCOMPARE(count.count(), 2);
        QCOMPARE(count[0][0].toULongLong(), 3000ULL);
        QCOMPARE(count[1][0].toULongLong(), 1500ULL);
    }

    void dropsAsManyOldBlocksAsNeeded()
    {
        m_settings.SetMeasurementMaxMeasurementCount(10);
        CDataSetMeasurement dataset(m_settings);
        const auto kept = blockOf(4);
        dataset.AddBlock(blockOf(3));
        dataset.AddBlock(blockOf(3));
        dataset.AddBlock(kept);
        QCOMPARE(dataset.ResultsCount(), quint64(10)); // the limit itself is allowed
        dataset.AddBlock(blockOf(5));
        QCOMPARE(dataset.ResultsCount(), quint64(9));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(2));
        QCOMPARE(dataset.MeasureBlocks()->front(), kept);
    }

    void droppedBlockLivesOnWithItsOtherHolder()
    {
        m_settings.SetMeasurementMaxMeasurementCount(1);
        CDataSetMeasurement dataset(m_settings);
        const auto held = blockOf(1);
        dataset.AddBlock(held);
        dataset.AddBlock(blockOf(1));
        QCOMPARE(held->Results.size(), 1);
    }

    void followsTheSettingAtTheNextBlock()
    {
        m_settings.SetMeasurementMaxMeasurementCount(100);
        CDataSetMeasurement dataset(m_settings);
        for (int i = 0; i < 10; ++i)
            dataset.AddBlock(blockOf(10));
        m_settings.SetMeasurementMaxMeasurementCount(20);
        QCOMPARE(dataset.ResultsCount(), quint64(100));
        dataset.AddBlock(blockOf(10));
        QCOMPARE(dataset.ResultsCount(), quint64(20));
    }

    void clearTellsInItsOrder()
    {
        m_settings.SetMeasurementMaxMeasurementCount(100);
        CDataSetMeasurement dataset(m_settings);
        CMeasurementParameters parameters;
        dataset.SetMeasurementParameters(&parameters);
        dataset.AddBlock(blockOf(2));
        dataset.SetComment(QStringLiteral("c"));
        dataset.SetDate(QStringLiteral("d"));
        QStringList told;
        connect(&dataset, &CDataset::CommentChanged, &dataset, [&] { told << QStringLiteral("Comment"); });
        connect(&dataset, &CDataset::FilePathChanged, &dataset, [&] { told << QStringLiteral("FilePath"); });
        connect(&dataset, &CDataset::InstrumentNameChanged, &dataset,
                [&] { told << QStringLiteral("InstrumentName"); });
        connect(&dataset, &CDataset::DateChanged, &dataset, [&] { told << QStringLiteral("Date"); });
        connect(&dataset, &CDataset::ResultsCountChanged, &dataset,
                [&] { told << QStringLiteral("ResultsCount"); });
        connect(&dataset, &CDataset::ClearedChanged, &dataset, [&](bool cleared) {
            QVERIFY(cleared);
            told << QStringLiteral("Cleared");
        });
        connect(&dataset, &CDataset::MeasurementParametersChanged, &dataset,
                [&] { told << QStringLiteral("Parameters"); });

        dataset.Clear();
        QCOMPARE(told.join(QLatin1Char(' ')),
                 QStringLiteral("Comment FilePath InstrumentName Date ResultsCount Cleared"));
        QVERIFY(dataset.Cleared());
        QVERIFY(dataset.MeasureBlocks()->empty());
        QCOMPARE(dataset.ResultsCount(), quint64(0));
        QVERIFY(dataset.Comment().isEmpty() && dataset.Date().isEmpty());
        QCOMPARE(dataset.MeasurementParameters(), &parameters);

        told.clear();
        dataset.Clear();
        QCOMPARE(told.join(QLatin1Char(' ')), QStringLiteral("FilePath InstrumentName Date Cleared"));
    }

    void tellsEachDroppedBlock()
    {
        m_settings.SetMeasurementMaxMeasurementCount(10);
        CDataSetMeasurement dataset(m_settings);
        dataset.AddBlock(blockOf(0));
        dataset.AddBlock(blockOf(10));
        QSignalSpy count(&dataset, &CDataset::ResultsCountChanged);
        dataset.AddBlock(blockOf(10));
        QCOMPARE(dataset.MeasureBlocks()->size(), size_t(1));
        QCOMPARE(count.count(), 3);
        QCOMPARE(count[0][0].toULongLong(), 20ULL);
        QCOMPARE(count[1][0].toULongLong(), 20ULL); // the empty block
        QCOMPARE(count[2][0].toULongLong(), 10ULL);
    }

#ifdef __GLIBC__
    void clearGivesTheStorageBack()
    {
        CDataSetMeasurement dataset(m_settings);
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
};

QTEST_GUILESS_MAIN(tst_CDataSetMeasurement)
#include "tst_CDataSetMeasurement.moc"
