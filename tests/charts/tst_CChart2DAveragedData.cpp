// SPDX-License-Identifier: GPL-3.0-or-later
#include "CChart2DAveragedData.h"
#include "MetaObjectTable.h"
#include "OperationFixture.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace MetaObjectTable;

namespace {

using Mode = CChart2DAveragedData::AveragingModes;

/// Averages nothing, but tells with which choice it would have.
class ChoiceRecorder : public CChart2DAveragedData
{
public:
    ChoiceRecorder(COperationMeasure* operation, CSettings* settings)
        : CChart2DAveragedData(operation->OperationParameters()->MeasurementParameters(), settings, nullptr)
    {
    }

    void UpdateFilter() override { choices.append({AveragingMode(), AveragingCount()}); }

    QVector<QPair<Mode, uint>> choices;
};

} // namespace

class tst_CChart2DAveragedData : public QObject, private OperationFixture
{
    Q_OBJECT

private slots:
    void init();
    void surface();
    void constructedFromSettings_data();
    void constructedFromSettings();
    void modeIndexDrivesMode();
    void countGoesToTheSettings();
    void changesFilterAnew();
    void saveWritesTheSettings();
    void deltaX();

private:
    void makeChart() { m_chart = std::make_unique<ChoiceRecorder>(m_operation.get(), m_settings.get()); }

    std::unique_ptr<ChoiceRecorder> m_chart;
};

void tst_CChart2DAveragedData::init()
{
    m_chart.reset();
    start();
    makeChart();
}

void tst_CChart2DAveragedData::surface()
{
    const QMetaObject& meta = CChart2DAveragedData::staticMetaObject;
    VERIFY_NO_DIFFERENCE(compareProperties(meta, {{"AveragingCount", "uint", ReadWrite},
                                                  {"AveragingMode", "AveragingModes", ReadWrite},
                                                  {"AveragingModeIndex", "int", ReadWrite},
                                                  {"AveragingModeNames", "QStringList", Constant}}));
    VERIFY_NO_DIFFERENCE(
        compareEnum(meta, "AveragingModes", {{"Off", 0}, {"Exponential", 1}, {"Moving", 2}}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Slot,
                                        {"onAveragingModeIndexChange()", "onAveragingCountIndexChange()"}));
    VERIFY_NO_DIFFERENCE(compareMethods(meta, QMetaMethod::Method, {"saveAveragingParameter()"}));
    QVERIFY(meta.inherits(&CChart2DFieldsData::staticMetaObject));
    QCOMPARE(m_chart->AveragingModeNames(),
             QStringList({QStringLiteral("Off"), QStringLiteral("Exponential"), QStringLiteral("Moving")}));
    QCOMPARE(m_chart->AveragingCount(), 1U);
    QCOMPARE(m_chart->AveragingMode(), Mode::Off);
    QCOMPARE(m_chart->AveragingModeIndex(), 0);
}

void tst_CChart2DAveragedData::constructedFromSettings_data()
{
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("mode");
    QTest::newRow("off") << 0 << 0 << 0;
    QTest::newRow("exponential") << 1 << 1 << 1;
    QTest::newRow("moving") << 2 << 2 << 2;
    QTest::newRow("unknown") << 3 << 0 << 0;
    QTest::newRow("negative") << -1 << 0 << 0;
}

void tst_CChart2DAveragedData::constructedFromSettings()
{
    QFETCH(int, stored);
    QFETCH(int, index);
    QFETCH(int, mode);
    m_settings->SetAveragingMode(stored);
    m_settings->SetAveragingCount(17);
    makeChart();
    QCOMPARE(m_chart->AveragingCount(), 17U);
    QCOMPARE(m_chart->AveragingModeIndex(), index);
    QCOMPARE(static_cast<int>(m_chart->AveragingMode()), mode);
    QCOMPARE(m_settings->AveragingMode(), index);
    QCOMPARE(m_settings->AveragingCount(), quint32{17});
}

void tst_CChart2DAveragedData::modeIndexDrivesMode()
{
    QSignalSpy indexSpy(m_chart.get(), &CChart2DAveragedData::AveragingModeIndexChanged);
    QSignalSpy modeSpy(m_chart.get(), &CChart2DAveragedData::AveragingModeChanged);
    QSignalSpy settingSpy(m_settings.get(), &CSettings::AveragingModeChanged);
    QSignalSpy resetSpy(m_chart.get(), &QAbstractItemModel::modelReset);
    m_chart->SetAveragingModeIndex(2);
    QCOMPARE(m_chart->AveragingMode(), Mode::Moving);
    QCOMPARE(m_settings->AveragingMode(), 2);
    m_chart->SetAveragingModeIndex(1);
    QCOMPARE(m_chart->AveragingMode(), Mode::Exponential);
    QCOMPARE(m_settings->AveragingMode(), 1);
    QCOMPARE(indexSpy.count(), 2);
    QCOMPARE(modeSpy.count(), 2);
    QCOMPARE(settingSpy.count(), 2);
    QCOMPARE(resetSpy.count(), 2);
    m_chart->SetAveragingModeIndex(1);
    m_chart->onAveragingModeIndexChange();
    QCOMPARE(indexSpy.count(), 2);
    QCOMPARE(modeSpy.count(), 2);
    QCOMPARE(settingSpy.count(), 2);
    for (const int outside : {3, -1, 1000}) {
        m_chart->SetAveragingModeIndex(2);
        modeSpy.clear();
        m_chart->SetAveragingModeIndex(outside);
        QCOMPARE(m_chart->AveragingModeIndex(), 0);
        QCOMPARE(m_chart->AveragingMode(), Mode::Off);
        QCOMPARE(m_settings->AveragingMode(), 0);
        QCOMPARE(modeSpy.count(), 1);
    }
}

void tst_CChart2DAveragedData::countGoesToTheSettings()
{
    QSignalSpy resetSpy(m_chart.get(), &QAbstractItemModel::modelReset);
    QSignalSpy settingSpy(m_settings.get(), &CSettings::AveragingCountChanged);
    QVERIFY(m_chart->setProperty("AveragingCount", 9));
    QCOMPARE(m_settings->AveragingCount(), quint32{9});
    QCOMPARE(resetSpy.count(), 1);
    m_chart->SetAveragingCount(9);
    QCOMPARE(resetSpy.count(), 1);
    QCOMPARE(settingSpy.count(), 1);
}

void tst_CChart2DAveragedData::saveWritesTheSettings()
{
    m_chart->SetAveragingCount(23);
    m_chart->SetAveragingModeIndex(2);
    QDir().mkpath(SettingsDirectoryPath);
    QVERIFY(QMetaObject::invokeMethod(m_chart.get(), "saveAveragingParameter"));
    const CSettings restored(QCoreApplication::applicationDirPath());
    QCOMPARE(restored.AveragingCount(), quint32{23});
    QCOMPARE(restored.AveragingMode(), 2);
}

void tst_CChart2DAveragedData::changesFilterAnew()
{
    QVERIFY(m_chart->choices.isEmpty());
    m_chart->SetAveragingCount(5);
    m_chart->SetAveragingModeIndex(2);
    m_chart->SetAveragingModeIndex(2);
    m_chart->SetAveragingMode(Mode::Exponential);
    m_chart->SetAveragingCount(0);
    const QVector<QPair<Mode, uint>> expected{
        {Mode::Off, 5}, {Mode::Moving, 5}, {Mode::Exponential, 5}, {Mode::Exponential, 0}};
    QCOMPARE(m_chart->choices, expected);
}

void tst_CChart2DAveragedData::deltaX()
{
    m_operation->OperationParameters()->MeasurementParameters()->SetAcquisitionRate(12.34);
    QCOMPARE(m_chart->ComputeDeltaX(), 123U);
}

QTEST_GUILESS_MAIN(tst_CChart2DAveragedData)
#include "tst_CChart2DAveragedData.moc"
