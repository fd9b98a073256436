// SPDX-License-Identifier: GPL-3.0-or-later
#include "Announcements.h"
#include "CDataSetMapping.h"
#include "CDataSetMeasurement.h"
#include "CMeasureBlockData.h"
#include "CRecordingManagerMapping.h"
#include "CRecordingManagerMeasure.h"
#include "CSettings.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QtTest>

#include <cmath>

namespace {

QSharedPointer<CFieldIntensityResult> makeSample(float b)
{
    auto sample = QSharedPointer<CFieldIntensityResult>::create();
    sample->Timestamp = QDateTime(QDate(2024, 2, 29), QTime(13, 5, 9, 7));
    sample->TimestampNanoseconds = 7000005;
    sample->SetB(b);
    sample->SetDB(b + 0.25F);
    sample->SetBBprime(b + 0.5F);
    sample->SetBx(b + 1);
    sample->SetBy(b + 2);
    sample->SetBz(b + 3);
    sample->SetDBConverted(b + 4);
    sample->SetTemperature(60000);
    return sample;
}

template <class Block = CMeasureBlock> QSharedPointer<Block> makeBlock(std::initializer_list<float> values)
{
    auto block = QSharedPointer<Block>::create();
    for (const float value : values)
        block->Results.append(makeSample(value));
    return block;
}

QSharedPointer<CMeasureBlockMapping> makeMappingBlock(std::initializer_list<float> values, double place)
{
    auto block = makeBlock<CMeasureBlockMapping>(values);
    block->Position.SetX(place + 0.1);
    block->Position.SetY(place + 0.2);
    block->Position.SetZ(place + 0.3);
    block->Orientation.SetRoll(place + 0.4);
    block->Orientation.SetPitch(place + 0.5);
    block->Orientation.SetYaw(place + 0.6);
    return block;
}

/// B of every row; -1 where the model has no answer.
QVector<float> columnB(const CMeasureBlockData& model)
{
    QVector<float> values;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QVariant value = model.data(model.index(row, 0), CMeasureBlockData::BRole);
        values.append(value.isValid() ? value.toFloat() : -1.0F);
    }
    return values;
}

QVector<double> columnOf(const CMeasureBlockData& model, int role)
{
    QVector<double> values;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QVariant value = model.data(model.index(row, 0), role);
        values.append(value.isValid() ? value.toDouble() : -1.0);
    }
    return values;
}

} // namespace

class tst_CMeasureBlockData : public QObject
{
    Q_OBJECT

private slots:
    void rolesAndShape();
    void dataByRole();
    void timestampOfInvalidTimeAndShortNanoseconds();
    void invalidAnswers();
    void liveRowsAreThoseOfTheNewestBlock();
    void addBlockWithoutClearGoesBehind();
    void emptyBlockAddsNothing();
    void ownListStates_data();
    void ownListStates();
    void ownListOutlivesTheDataset();
    void clearForgetsTheOwnList();
    void constructorPicksBlock_data();
    void constructorPicksBlock();
    void reloadRows();
    void mappingRowsAreBlocks();
    void mappingRowsFollowTheDatasetLimit();
    void mappingRowsDroppedAtOnceForManyLostBlocks();
    void mappingReplayKeepsCopies();
    void mappingOwnListStates_data() { ownListStates_data(); }
    void mappingOwnListStates();
    void mappingBlockWithoutSamples();
    void manyMappingBlocksAtOnce_data();
    void manyMappingBlocksAtOnce();

private:
    CSettings m_settings{QCoreApplication::applicationDirPath()};
};

void tst_CMeasureBlockData::rolesAndShape()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QVector<QByteArray> names{"Timestamp", "B", "dB", "BBprime", "Bx",   "By",    "Bz",
                                    "T",         "X", "Y",  "Z",       "Roll", "Pitch", "Yaw"};
    const QHash<int, QByteArray> roles = model.roleNames();
    QCOMPARE(roles.size(), 14);
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(roles.value(257 + i), names.at(i));
    QCOMPARE(model.columnCount(), 7);
    QCOMPARE(model.rowCount(), 0);
}

void tst_CMeasureBlockData::dataByRole()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    const auto block = makeBlock({10});
    manager.AddMeasureBlock(block);
    model.AddBlock(block);
    for (int column = 0; column < 7; ++column) {
        const QModelIndex index = model.index(0, column);
        QCOMPARE(model.data(index, 257), QVariant(QStringLiteral("2024.02.29T13:05:09.007000005")));
        QCOMPARE(model.data(index, 258), QVariant(10.0F));
        QCOMPARE(model.data(index, 259), QVariant(14.0F));
        QCOMPARE(model.data(index, 260), QVariant(10.5F));
        QCOMPARE(model.data(index, 261), QVariant(11.0F));
        QCOMPARE(model.data(index, 262), QVariant(12.0F));
        QCOMPARE(model.data(index, 263), QVariant(13.0F));
        QCOMPARE(model.data(index, 264), QVariant(60000));
        for (int role = 265; role <= 270; ++role)
            QVERIFY(!model.data(index, role).isValid());
        for (const int role : {0, 256, 271, 1000})
            QVERIFY(!model.data(index, role).isValid());
    }
    QCOMPARE(model.data(model.index(0, 0), 258).userType(), int(QMetaType::Float));
    QCOMPARE(model.data(model.index(0, 0), 264).userType(), int(QMetaType::Int));
}

void tst_CMeasureBlockData::timestampOfInvalidTimeAndShortNanoseconds()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    const auto block = QSharedPointer<CMeasureBlock>::create();
    block->Results.append(QSharedPointer<CFieldIntensityResult>::create());
    block->Results.append(makeSample(1));
    block->Results.last()->TimestampNanoseconds = 999999999;
    manager.AddMeasureBlock(block);
    model.AddBlock(block);
    QCOMPARE(model.data(model.index(0, 0), 257).toString(), QStringLiteral(".000000000"));
    QCOMPARE(model.data(model.index(1, 0), 257).toString(), QStringLiteral("2024.02.29T13:05:09.999999999"));
    QVERIFY(std::isnan(model.data(model.index(0, 0), 259).toFloat()));
    QCOMPARE(model.data(model.index(0, 0), 264), QVariant(0));
}

void tst_CMeasureBlockData::invalidAnswers()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    // A row without a dataset behind it.
    model.AddBlock(makeBlock({1, 2}));
    QCOMPARE(model.rowCount(), 2);
    for (int role = 257; role <= 270; ++role)
        QVERIFY(!model.data(model.index(0, 0), role).isValid());
    QVERIFY(!model.data(QModelIndex(), 258).isValid());
    manager.AddMeasureBlock(makeBlock({1}));
    QVERIFY(model.data(model.index(0, 0), 258).isValid());
    QVERIFY(!model.data(model.index(1, 0), 258).isValid());
    QVERIFY(!model.index(2, 0).isValid());
    QCOMPARE(model.rowCount(model.index(0, 0)), 0);
    QCOMPARE(model.columnCount(model.index(0, 0)), 0);
}

void tst_CMeasureBlockData::liveRowsAreThoseOfTheNewestBlock()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Announcements announcements(model);
    for (const float base : {10.0F, 20.0F}) {
        const auto block = makeBlock({base, base + 1, base + 2});
        manager.AddMeasureBlock(block);
        model.Clear();
        model.AddBlock(block);
        QCOMPARE(columnB(model), (QVector<float>{base, base + 1, base + 2}));
    }
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("insert 0..2"), QStringLiteral("remove 0..2"),
                                              QStringLiteral("insert 0..2")}));
}

void tst_CMeasureBlockData::addBlockWithoutClearGoesBehind()
{
    CRecordingManagerMeasure manager(m_settings);
    manager.SetIsPlayingBack(true);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Announcements announcements(model);
    model.AddBlock(makeBlock({1, 2}));
    model.AddBlock(makeBlock({3}));
    QCOMPARE(columnB(model), (QVector<float>{1, 2, 3}));
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("insert 0..1"), QStringLiteral("insert 2..2")}));
}

void tst_CMeasureBlockData::emptyBlockAddsNothing()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    Announcements announcements(model);
    model.AddBlock(makeBlock({}));
    model.Clear();
    model.ReloadRows();
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(announcements.list.isEmpty());
}

void tst_CMeasureBlockData::ownListStates_data()
{
    QTest::addColumn<bool>("playingBack");
    QTest::addColumn<bool>("dataLoaded");
    QTest::addColumn<bool>("recording");
    QTest::addColumn<bool>("idleWithData");
    for (int bits = 0; bits < 16; ++bits) {
        QTest::addRow("state %d", bits)
            << bool(bits & 1) << bool(bits & 2) << bool(bits & 4) << bool(bits & 8);
    }
}

void tst_CMeasureBlockData::ownListStates()
{
    QFETCH(bool, playingBack);
    QFETCH(bool, dataLoaded);
    QFETCH(bool, recording);
    QFETCH(bool, idleWithData);
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    manager.DataSet()->MeasureBlocks()->push_back(makeBlock({100, 101}));
    manager.SetIsPlayingBack(playingBack);
    manager.SetIsDataLoaded(dataLoaded);
    manager.SetIsRecording(recording);
    manager.SetIsIdleWithData(idleWithData);
    model.AddBlock(makeBlock({1, 2}));
    const bool useOwnList = playingBack || dataLoaded || (!recording && idleWithData);
    QCOMPARE(columnB(model), useOwnList ? (QVector<float>{1, 2}) : (QVector<float>{100, 101}));
}

void tst_CMeasureBlockData::ownListOutlivesTheDataset()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    manager.SetIsDataLoaded(true);
    model.AddBlock(makeBlock({1, 2}));
    QCOMPARE(columnB(model), (QVector<float>{1, 2}));
    for (int role = 265; role <= 270; ++role)
        QVERIFY(!model.data(model.index(0, 0), role).isValid());
    // A live block behind them reads the dataset for every row.
    manager.SetIsDataLoaded(false);
    manager.AddMeasureBlock(makeBlock({7}));
    model.AddBlock(makeBlock({7}));
    QCOMPARE(columnB(model), (QVector<float>{7, -1, -1}));
}

void tst_CMeasureBlockData::clearForgetsTheOwnList()
{
    CRecordingManagerMeasure manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    Announcements announcements(model);
    manager.SetIsPlayingBack(true);
    model.AddBlock(makeBlock({1, 2}));
    model.Clear();
    QCOMPARE(model.rowCount(), 0);
    model.AddBlock(makeBlock({5}));
    QCOMPARE(columnB(model), (QVector<float>{5}));
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("insert 0..1"), QStringLiteral("remove 0..1"),
                                              QStringLiteral("insert 0..0")}));
}

void tst_CMeasureBlockData::constructorPicksBlock_data()
{
    QTest::addColumn<bool>("playingBack");
    QTest::addColumn<int>("replayIndex");
    QTest::addColumn<float>("first");
    QTest::addRow("live shows the newest") << false << 0 << 3.0F;
    QTest::addRow("replay shows its block") << true << 0 << 1.0F;
    QTest::addRow("replay in the middle") << true << 1 << 2.0F;
    QTest::addRow("replay index beyond the end") << true << 3 << 3.0F;
    QTest::addRow("negative replay index") << true << -1 << 3.0F;
}

void tst_CMeasureBlockData::constructorPicksBlock()
{
    QFETCH(bool, playingBack);
    QFETCH(int, replayIndex);
    QFETCH(float, first);
    CRecordingManagerMeasure manager(m_settings);
    for (const float value : {1.0F, 2.0F, 3.0F})
        manager.AddMeasureBlock(makeBlock({value, value + 0.5F}));
    manager.SetIsPlayingBack(playingBack);
    manager.SetReplayIndex(replayIndex);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QCOMPARE(columnB(model), (QVector<float>{first, first + 0.5F}));
}

void tst_CMeasureBlockData::reloadRows()
{
    CRecordingManagerMeasure manager(m_settings);
    manager.SetIsPlayingBack(true);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.AddBlock(makeBlock({1, 2, 3}));
    Announcements announcements(model);
    model.ReloadRows();
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("remove 0..2"), QStringLiteral("insert 0..2")}));
    QCOMPARE(columnB(model), (QVector<float>{1, 2, 3}));
}

void tst_CMeasureBlockData::mappingRowsAreBlocks()
{
    CRecordingManagerMapping manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    auto& blocks = *manager.DataSet()->MeasureBlocks();
    for (int i = 0; i < 3; ++i) {
        blocks.push_back(makeMappingBlock({float(i), float(i) + 10}, i));
        model.AddMappingBlock(blocks.back());
    }
    // The last sample of each block.
    QCOMPARE(columnB(model), (QVector<float>{10, 11, 12}));
    for (int i = 0; i < 6; ++i) {
        const double fraction = 0.1 * (i + 1);
        const QVector<double> values = columnOf(model, 265 + i);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(values.at(row), row + fraction);
    }
    QCOMPARE(model.data(model.index(0, 0), 265).userType(), int(QMetaType::Double));
    QCOMPARE(model.data(model.index(2, 0), 264), QVariant(60000));
    model.Clear();
    QCOMPARE(model.rowCount(), 0);
}

void tst_CMeasureBlockData::mappingRowsFollowTheDatasetLimit()
{
    CRecordingManagerMapping manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    auto& blocks = *manager.DataSet()->MeasureBlocks();
    Announcements announcements(model);
    for (int i = 0; i < 5; ++i) {
        blocks.push_back(makeMappingBlock({float(i)}, i));
        if (blocks.size() > 3)
            blocks.pop_front();
        model.AddMappingBlock(blocks.back());
        QCOMPARE(model.rowCount(), int(blocks.size()));
    }
    QCOMPARE(columnB(model), (QVector<float>{2, 3, 4}));
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("insert 0..0"), QStringLiteral("insert 1..1"),
                                              QStringLiteral("insert 2..2"), QStringLiteral("remove 0..0"),
                                              QStringLiteral("insert 2..2"), QStringLiteral("remove 0..0"),
                                              QStringLiteral("insert 2..2")}));
}

void tst_CMeasureBlockData::mappingRowsDroppedAtOnceForManyLostBlocks()
{
    CRecordingManagerMapping manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    auto& blocks = *manager.DataSet()->MeasureBlocks();
    for (int i = 0; i < 4; ++i) {
        blocks.push_back(makeMappingBlock({float(i)}, i));
        model.AddMappingBlock(blocks.back());
    }
    // A smaller limit leaves only the newest block.
    blocks.clear();
    blocks.push_back(makeMappingBlock({9}, 9));
    Announcements announcements(model);
    model.AddMappingBlock(blocks.back());
    QCOMPARE(announcements.list, (QStringList{QStringLiteral("remove 0..3"), QStringLiteral("insert 0..0")}));
    QCOMPARE(columnB(model), (QVector<float>{9}));
    // Even an empty dataset takes away no more rows than there are.
    blocks.clear();
    model.AddMappingBlock(makeMappingBlock({9}, 9));
    QCOMPARE(model.rowCount(), 1);
    // The row of a block that the dataset has not got any more has nothing to tell.
    const QHash<int, QByteArray> roles = model.roleNames();
    for (auto role = roles.begin(); role != roles.end(); ++role)
        QVERIFY2(!model.data(model.index(0, 0), role.key()).isValid(), role->constData());
}

void tst_CMeasureBlockData::mappingReplayKeepsCopies()
{
    CRecordingManagerMapping manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    manager.SetIsPlayingBack(true);
    const auto first = makeMappingBlock({1, 2}, 1);
    const auto second = makeMappingBlock({3, 4}, 2);
    model.AddMappingBlock(first);
    model.AddMappingBlock(second);
    first->Position.SetX(77);
    first->Orientation.SetYaw(77);
    // The dataset is empty: nothing is read from it.
    QCOMPARE(columnB(model), (QVector<float>{2, 4}));
    for (int i = 0; i < 6; ++i) {
        const QVector<double> values = columnOf(model, 265 + i);
        QCOMPARE(values.at(0), 1 + 0.1 * (i + 1));
        QCOMPARE(values.at(1), 2 + 0.1 * (i + 1));
    }
}

/// A replay alone keeps rows of its own; what other operations do with a loaded dataset is no matter.
void tst_CMeasureBlockData::mappingOwnListStates()
{
    QFETCH(bool, playingBack);
    QFETCH(bool, dataLoaded);
    QFETCH(bool, recording);
    QFETCH(bool, idleWithData);
    CRecordingManagerMapping manager(m_settings);
    manager.SetIsPlayingBack(playingBack);
    manager.SetIsDataLoaded(dataLoaded);
    manager.SetIsRecording(recording);
    manager.SetIsIdleWithData(idleWithData);
    CMeasureBlockData model(manager.DataSet(), &manager);
    manager.DataSet()->MeasureBlocks()->push_back(makeMappingBlock({1, 2}, 1));
    model.AddMappingBlock(manager.DataSet()->MeasureBlocks()->back());
    QCOMPARE(columnB(model), (QVector<float>{2}));
    manager.DataSet()->MeasureBlocks()->front() = makeMappingBlock({3, 4}, 2);
    QCOMPARE(columnB(model), (QVector<float>{playingBack ? 2.0F : 4.0F}));
    QCOMPARE(columnOf(model, 265), (QVector<double>{playingBack ? 1.1 : 2.1}));
}

void tst_CMeasureBlockData::mappingBlockWithoutSamples()
{
    CRecordingManagerMapping manager(m_settings);
    CMeasureBlockData model(manager.DataSet(), &manager);
    manager.DataSet()->MeasureBlocks()->push_back(makeMappingBlock({}, 3));
    model.AddMappingBlock(manager.DataSet()->MeasureBlocks()->back());
    QCOMPARE(columnB(model), (QVector<float>{-1}));
    QCOMPARE(columnOf(model, 265), (QVector<double>{3.1}));
    model.Clear();
    manager.SetIsPlayingBack(true);
    model.AddMappingBlock(manager.DataSet()->MeasureBlocks()->back());
    QCOMPARE(columnB(model), (QVector<float>{-1}));
}

void tst_CMeasureBlockData::manyMappingBlocksAtOnce_data()
{
    QTest::addColumn<bool>("isPlayingBack");
    QTest::addRow("rows of the dataset") << false;
    QTest::addRow("rows of their own") << true;
}

/// The rows are those of one block after the other, but announced together.
void tst_CMeasureBlockData::manyMappingBlocksAtOnce()
{
    QFETCH(bool, isPlayingBack);
    CRecordingManagerMapping manager(m_settings);
    manager.SetIsPlayingBack(isPlayingBack);
    auto& blocks = *manager.DataSet()->MeasureBlocks();
    for (int i = 0; i < 6; ++i)
        blocks.push_back(i == 2 ? makeMappingBlock({}, i) : makeMappingBlock({1.0F, float(i)}, i));
    CMeasureBlockData model(manager.DataSet(), &manager);
    CMeasureBlockData singly(manager.DataSet(), &manager);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const auto compare = [&] {
        QCOMPARE(model.rowCount(), singly.rowCount());
        QCOMPARE(columnB(model), columnB(singly));
        QCOMPARE(columnOf(model, 265), columnOf(singly, 265));
    };
    const Announcements announcements(model);
    model.AddMappingBlocks(blocks, 0);
    model.AddMappingBlocks(blocks, 4);
    for (int i = 0; i < 4; ++i)
        singly.AddMappingBlock(blocks.at(static_cast<std::size_t>(i)));
    QCOMPARE(announcements.list, QStringList{QStringLiteral("insert 0..3")});
    QCOMPARE(columnB(model), (QVector<float>{0, 1, -1, 3}));
    compare();
    // Beyond the last block, and with more rows than the dataset has blocks.
    model.AddMappingBlocks(blocks, 100);
    for (const auto& block : blocks)
        singly.AddMappingBlock(block);
    compare();
    QCOMPARE(model.rowCount(), isPlayingBack ? 10 : 6);
}

QTEST_GUILESS_MAIN(tst_CMeasureBlockData)
#include "tst_CMeasureBlockData.moc"
