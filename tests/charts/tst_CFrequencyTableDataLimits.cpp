// SPDX-License-Identifier: GPL-3.0-or-later
// The comparison of the bands with their limits.
#include "BandTableFixture.h"
#include "PropertyLog.h"

#include <QTest>

#include <cmath>
#include <limits>

class tst_CFrequencyTableDataLimits : public QObject, private BandTableFixture
{
    Q_OBJECT

private slots:
    void init();
    void flag_data();
    void flag();
    void noticesByState_data();
    void noticesByState();
    void textOfTheFirstBand();
    void textNamesTheAxis_data();
    void textNamesTheAxis();
    void violatedBandEndsTheWalk();
    void flagFollowsEveryBand();
    void noticeWithEveryUpdate();
    void offLeavesTheFlag();
    void axisOutsideTheTable_data();
    void axisOutsideTheTable();
    void withoutLimitsNothingIsCompared();
    void notANumberPasses();
    void figureAtItsLimitPasses();
    void noticeComesBeforeTheRows();

private:
    void setAlarm(CAlarm::AlarmState state, CAxis::AxisType axis = CAxis::B);
    /// A constant of 1 and, on each axis, a sine of amplitude 2 in the second of the bands to 5, 20 and 50
    /// Hz.
    void showLines();
};

void tst_CFrequencyTableDataLimits::init()
{
    start();
}

void tst_CFrequencyTableDataLimits::setAlarm(CAlarm::AlarmState state, CAxis::AxisType axis)
{
    CAlarmParametersAcAnalysis& alarm = *m_operation->OperationParameters()->AlarmParametersAcAnalysis();
    alarm.SetState(state);
    alarm.SetAxis(axis);
}

void tst_CFrequencyTableDataLimits::showLines()
{
    recordParameters(100.0, 100, 0.0, 50.0);
    const double pi = std::acos(-1.0);
    auto block = Block::create();
    for (int i = 0; i < 100; ++i) {
        const auto b = static_cast<float>(1.0 + 2.0 * std::sin(2.0 * pi * 10.0 * i / 100.0));
        block->Results.append(makeResult(i * 10000000, {b, b, b, b, b, 0}));
    }
    addBlock(block);
}

void tst_CFrequencyTableDataLimits::flag_data()
{
    QTest::addColumn<QVector<double>>("limits");
    QTest::addColumn<bool>("flag");
    // The bands read 1, 1.41421 and 0
    QTest::newRow("all below") << QVector<double>({2.0, 2.0, 2.0}) << false;
    QTest::newRow("first above") << QVector<double>({0.5, 2.0, 2.0}) << true;
    QTest::newRow("second above") << QVector<double>({2.0, 1.25, 2.0}) << true;
    QTest::newRow("above its limit, below the others") << QVector<double>({4.0, 1.25, 4.0}) << true;
    QTest::newRow("last above a negative limit") << QVector<double>({2.0, 2.0, -1.0}) << true;
}

void tst_CFrequencyTableDataLimits::flag()
{
    QFETCH(QVector<double>, limits);
    QFETCH(bool, flag);
    showLines();
    loadLimits({{5.0, limits[0]}, {20.0, limits[1]}, {50.0, limits[2]}});
    setAlarm(CAlarm::FlagNotification);
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), flag);
    // And back
    loadLimits({{5.0, 9.0}, {20.0, 9.0}, {50.0, 9.0}});
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), false);
}

void tst_CFrequencyTableDataLimits::noticesByState_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("flag");
    QTest::addColumn<QStringList>("calls");
    // The rebuilt sine of amplitude 2 has an RMS of 1.41421
    const QString message =
        QStringLiteral("B is out-of-limit|Minimum = 4.0000\nB = 1.4142\nMaximum = 1.2500");
    QTest::newRow("off") << int(CAlarm::Off) << false << QStringList();
    QTest::newRow("notification") << int(CAlarm::Notification) << true << QStringList({message});
    QTest::newRow("audio") << int(CAlarm::Audio) << true << QStringList({message, QStringLiteral("beep")});
    QTest::newRow("flag") << int(CAlarm::FlagNotification) << true << QStringList();
}

void tst_CFrequencyTableDataLimits::noticesByState()
{
    QFETCH(int, state);
    QFETCH(bool, flag);
    QFETCH(QStringList, calls);
    showLines();
    loadLimits({{5.0, 4.0}, {20.0, 1.25}, {50.0, 4.0}});
    setAlarm(static_cast<CAlarm::AlarmState>(state));
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), flag);
    QCOMPARE(m_notifier.calls, calls);
}

void tst_CFrequencyTableDataLimits::textOfTheFirstBand()
{
    addBlock(levelBlock(8192.0F));
    loadLimits({{5.0, 2000.5}, {50.0, 2000.5}});
    setAlarm(CAlarm::Notification);
    m_model->UpdateTable(0);
    // Four and more digits before the point are shown without decimals, and floored
    QCOMPARE(m_notifier.calls,
             QStringList({QStringLiteral("B is out-of-limit|Minimum = 0.0000\nB = 8192\nMaximum = 2000")}));
}

void tst_CFrequencyTableDataLimits::textNamesTheAxis_data()
{
    QTest::addColumn<int>("axis");
    QTest::addColumn<QString>("name");
    QTest::newRow("B") << int(CAxis::B) << QStringLiteral("B");
    QTest::newRow("BBprime") << int(CAxis::BBprime) << QString::fromUtf8("B·B'");
    QTest::newRow("Bx") << int(CAxis::Bx) << QStringLiteral("Bx");
    QTest::newRow("By") << int(CAxis::By) << QStringLiteral("By");
    QTest::newRow("Bz") << int(CAxis::Bz) << QStringLiteral("Bz");
}

/// The chosen axis alone is compared.
void tst_CFrequencyTableDataLimits::textNamesTheAxis()
{
    QFETCH(int, axis);
    QFETCH(QString, name);
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::Notification, static_cast<CAxis::AxisType>(axis));
    for (int other = 0; other < 5; ++other) {
        SixFields fields{};
        fields[static_cast<std::size_t>(other)] = 8.0F;
        auto block = Block::create();
        for (int i = 0; i < 20; ++i)
            block->Results.append(makeResult(i, fields));
        addBlock(block);
        m_notifier.calls.clear();
        m_model->UpdateTable(0);
        QCOMPARE(m_model->FlagNotification(), other == axis - 1);
        QCOMPARE(m_notifier.calls.size(), other == axis - 1 ? 1 : 0);
        if (other == axis - 1)
            QCOMPARE(m_notifier.calls.first(), name + QStringLiteral(" is out-of-limit|Minimum = 0.0000\n") +
                                                   name + QStringLiteral(" = 8.0000\nMaximum = 4.5000"));
    }
}

void tst_CFrequencyTableDataLimits::violatedBandEndsTheWalk()
{
    showLines();
    loadLimits({{5.0, 0.5}, {20.0, 0.75}, {50.0, 2.0}});
    setAlarm(CAlarm::Notification);
    m_model->UpdateTable(0);
    QCOMPARE(m_notifier.calls.size(), 1);
    QVERIFY(m_notifier.calls.first().endsWith(QStringLiteral("Maximum = 0.5000")));
}

/// A band that passes takes the flag back before the next one raises it.
void tst_CFrequencyTableDataLimits::flagFollowsEveryBand()
{
    showLines();
    loadLimits({{5.0, 2.0}, {20.0, 1.25}, {50.0, 2.0}});
    setAlarm(CAlarm::FlagNotification);
    m_model->UpdateTable(0);
    PropertyLog log(m_model.get());
    m_model->UpdateTable(0);
    QCOMPARE(log.take(), QStringList({QStringLiteral("FlagNotification=false"),
                                      QStringLiteral("FlagNotification=true")}));
    loadLimits({{5.0, 0.5}, {20.0, 1.25}, {50.0, 2.0}});
    m_model->UpdateTable(0);
    QCOMPARE(log.take(), QStringList());
}

void tst_CFrequencyTableDataLimits::noticeWithEveryUpdate()
{
    addBlock(levelBlock(8.0F));
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::Audio);
    for (int i = 1; i <= 3; ++i) {
        m_model->UpdateTable(0);
        QCOMPARE(m_notifier.calls.size(), 2 * i);
    }
}

void tst_CFrequencyTableDataLimits::offLeavesTheFlag()
{
    addBlock(levelBlock(8.0F));
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::FlagNotification);
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), true);
    setAlarm(CAlarm::Off);
    loadLimits({{50.0, 9.0}});
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), true);
    m_model->Clear();
    QCOMPARE(m_model->FlagNotification(), true);
}

void tst_CFrequencyTableDataLimits::axisOutsideTheTable_data()
{
    QTest::addColumn<int>("axis");
    QTest::newRow("dB") << int(CAxis::dB);
    QTest::newRow("0") << 0;
    QTest::newRow("7") << 7;
}

void tst_CFrequencyTableDataLimits::axisOutsideTheTable()
{
    QFETCH(int, axis);
    addBlock(levelBlock(8.0F));
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::Audio, static_cast<CAxis::AxisType>(axis));
    m_model->UpdateTable(0);
    QCOMPARE(m_model->FlagNotification(), false);
    QCOMPARE(m_notifier.calls, QStringList());
    QCOMPARE(m_model->rowCount(), 1);
}

/// More bands than limits: there is a row, and nothing to compare it with.
void tst_CFrequencyTableDataLimits::withoutLimitsNothingIsCompared()
{
    addBlock(levelBlock(8.0F));
    setAlarm(CAlarm::Audio);
    m_model->SetFlagNotification(true);
    m_model->UpdateTable(0);
    QCOMPARE(m_model->rowCount(), 1);
    QCOMPARE(m_model->FlagNotification(), true);
    QCOMPARE(m_notifier.calls, QStringList());
}

void tst_CFrequencyTableDataLimits::notANumberPasses()
{
    addBlock(levelBlock(std::numeric_limits<float>::quiet_NaN()));
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::Audio);
    m_model->UpdateTable(0);
    QVERIFY(std::isnan(valueAt(0, Model::BRole).toFloat()));
    QCOMPARE(m_model->FlagNotification(), false);
    QCOMPARE(m_notifier.calls, QStringList());
}

void tst_CFrequencyTableDataLimits::figureAtItsLimitPasses()
{
    // No field at all is the one whose figure is exact.
    addBlock(levelBlock(0));
    loadLimits({{50.0, 0.0}});
    setAlarm(CAlarm::Audio);
    m_model->UpdateTable(0);
    QCOMPARE(valueAt(0, Model::BRole).toFloat(), 0.0F);
    QCOMPARE(m_model->FlagNotification(), false);
    QCOMPARE(m_notifier.calls, QStringList());
}

void tst_CFrequencyTableDataLimits::noticeComesBeforeTheRows()
{
    addBlock(levelBlock(8.0F));
    loadLimits({{50.0, 4.5}});
    setAlarm(CAlarm::Notification);
    int calls = -1;
    bool flag = false;
    connect(m_model.get(), &QAbstractItemModel::rowsInserted, this, [&] {
        calls = m_notifier.calls.size();
        flag = m_model->FlagNotification();
    });
    m_model->UpdateTable(0);
    QCOMPARE(calls, 1);
    QCOMPARE(flag, true);
}

QTEST_GUILESS_MAIN(tst_CFrequencyTableDataLimits)
#include "tst_CFrequencyTableDataLimits.moc"
