// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSpectrumAlarm.h"
#include "LogRecorder.h"
#include "SpectrumPage.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace SpectrumPage;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// Bands of upper frequency in Hz and exposure, in this order.
CSpectrumAlarm::Limits bands(const QVector<QPair<double, double>>& values)
{
    CSpectrumAlarm::Limits limits;
    for (const auto& band : values) {
        auto range = QSharedPointer<FrequencyRange>::create();
        range->SetUpperFrequencyLimitValue(band.first);
        range->SetExposureLimitValue(band.second);
        limits.append(range);
    }
    return limits;
}

} // namespace

class tst_CSpectrumAlarm : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void effectByState_data();
    void effectByState();
    void texts();
    void nothingToCompare_data();
    void nothingToCompare();
    void walk_data();
    void walk();
    void everySpectrumGivesAMessage();
    void quietTime();
    void stopped();

    void pageTellsFrequencyExposureAndLimit();
    void offLeavesTheFlagOfThePage();
    void flagOfThePageFalls();
    void pageChecksNewBlocksOnly();
    void pageComparesInItsUnit();

private:
    using Flags = QVector<bool>;

    Flags check(CSpectrumAlarm& alarm, const std::vector<float>& spectrum,
                const CSpectrumAlarm::Limits& limits)
    {
        Flags flags;
        alarm.Check(spectrum, m_bins, limits, m_state, [&](bool flag) { flags.append(flag); });
        return flags;
    }

    FakeNotifier m_notifier;
    CSpectrumAlarm::Bins m_bins;
    CAlarm::AlarmState m_state;
};

void tst_CSpectrumAlarm::init()
{
    m_notifier.calls.clear();
    m_bins = {1.0, 0.0};
    m_state = CAlarm::Notification;
}

void tst_CSpectrumAlarm::effectByState_data()
{
    QTest::addColumn<CAlarm::AlarmState>("state");
    QTest::addColumn<int>("trayMessages");
    QTest::addColumn<int>("beeps");
    QTest::newRow("notification") << CAlarm::Notification << 1 << 0;
    QTest::newRow("audio") << CAlarm::Audio << 1 << 1;
    QTest::newRow("flag") << CAlarm::FlagNotification << 0 << 0;
}

void tst_CSpectrumAlarm::effectByState()
{
    QFETCH(CAlarm::AlarmState, state);
    QFETCH(int, trayMessages);
    QFETCH(int, beeps);
    m_state = state;
    CSpectrumAlarm alarm(&m_notifier);
    const LogRecorder log;
    QCOMPARE(check(alarm, {2}, bands({{10, 1}})), Flags{true});
    // No log line, other than with samples.
    QCOMPARE(log.Messages().size(), 0);
    QCOMPARE(m_notifier.calls.count(QStringLiteral("beep")), beeps);
    QCOMPARE(m_notifier.calls.size(), trayMessages + beeps);
}

void tst_CSpectrumAlarm::texts()
{
    m_state = CAlarm::Audio;
    m_bins = {2.5, 0.0};
    CSpectrumAlarm alarm(&m_notifier);
    check(alarm, {0, 0.5F, 1, 123.456F}, bands({{100, 1}}));
    QCOMPARE(m_notifier.calls, (QStringList{QStringLiteral("Spectrum is out-of-limit|Frequency = 7.5000 Hz\n"
                                                           "Exposure = 123.46\nLimit = 1.0000"),
                                            QStringLiteral("beep")}));
}

void tst_CSpectrumAlarm::nothingToCompare_data()
{
    using Bands = QVector<QPair<double, double>>;
    const double infinite = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<int>("bins");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<Bands>("limits");
    QTest::newRow("no limits") << 8 << 1.0 << 0.0 << Bands{};
    QTest::newRow("no bins") << 0 << 1.0 << 0.0 << Bands{{100, 1}};
    QTest::newRow("no width") << 8 << 0.0 << 0.0 << Bands{{100, 1}};
    QTest::newRow("width below zero") << 8 << -1.0 << -20.0 << Bands{{100, 1}};
    QTest::newRow("width is no number") << 8 << notANumber << 0.0 << Bands{{100, 1}};
    QTest::newRow("limits below the minimum") << 8 << 1.0 << 5.0 << Bands{{1, 1}, {4.999, 1}};
    QTest::newRow("minimum at the end") << 8 << 1.0 << 8.0 << Bands{{100, 1}};
    QTest::newRow("minimum without end") << 8 << 1.0 << infinite << Bands{{infinite, 1}};
    QTest::newRow("minimum is no number") << 8 << 1.0 << notANumber << Bands{{100, 1}};
}

void tst_CSpectrumAlarm::nothingToCompare()
{
    using Bands = QVector<QPair<double, double>>;
    QFETCH(int, bins);
    QFETCH(Bands, limits);
    QFETCH(double, width);
    QFETCH(double, minimum);
    m_bins = {width, minimum};
    CSpectrumAlarm alarm(&m_notifier);
    QCOMPARE(check(alarm, std::vector<float>(static_cast<std::size_t>(bins), 50.0F), ::bands(limits)),
             Flags());
    QCOMPARE(m_notifier.calls, QStringList());
}

void tst_CSpectrumAlarm::walk_data()
{
    using Spectrum = QVector<float>;
    using Bands = QVector<QPair<double, double>>;
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<Spectrum>("spectrum");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<Bands>("limits");
    QTest::addColumn<Flags>("flags");
    const auto passes = [](int count) { return Flags(count, false); };
    const auto fails = [](int count) {
        Flags flags(count, false);
        flags.last() = true;
        return flags;
    };
    QTest::newRow("all pass") << Spectrum{1, 1, 1} << 0.0 << Bands{{100, 1}} << passes(3);
    QTest::newRow("last bin") << Spectrum{1, 1, 1.5F} << 0.0 << Bands{{100, 1}} << fails(3);
    QTest::newRow("not looked at behind") << Spectrum{1, 2, 1} << 0.0 << Bands{{100, 1}} << fails(2);
    QTest::newRow("behind the last band") << Spectrum{1, 1, 1, 9} << 0.0 << Bands{{2, 1}} << passes(3);
    // A bin on the upper end of a band is still compared with this band.
    QTest::newRow("end of a band") << Spectrum{0, 0, 3, 3} << 0.0 << Bands{{2, 5}, {9, 1}} << fails(4);
    QTest::newRow("between the bins") << Spectrum{0, 0, 3, 3} << 0.0 << Bands{{1.5, 5}, {9, 1}} << fails(4);
    // Only one band is left behind with a bin.
    QTest::newRow("narrow bands") << Spectrum{0, 2, 2, 2} << 0.0 << Bands{{0.1, 9}, {0.2, 3}, {9, 1}}
                                  << fails(4);
    QTest::newRow("minimum is cut to a bin")
        << Spectrum{9, 9, 2, 0} << 2.9 << Bands{{2, 1}, {9, 2}} << passes(2);
    QTest::newRow("first band by the minimum")
        << Spectrum{9, 9, 2, 0} << 2.0 << Bands{{2, 1}, {9, 2}} << fails(1);
    QTest::newRow("minimum below zero") << Spectrum{2, 0} << -3.0 << Bands{{9, 1}} << fails(1);
    QTest::newRow("bands in file order") << Spectrum{0, 0, 2, 2} << 0.0 << Bands{{3, 5}, {1, 1}} << passes(4);
    QTest::newRow("no number passes") << Spectrum{kNaN, kNaN} << 0.0 << Bands{{9, 1}} << passes(2);
    QTest::newRow("limit is no number") << Spectrum{8, 8} << 0.0 << Bands{{9, notANumber}} << passes(2);
}

void tst_CSpectrumAlarm::walk()
{
    using Bands = QVector<QPair<double, double>>;
    QFETCH(QVector<float>, spectrum);
    QFETCH(double, minimum);
    QFETCH(Bands, limits);
    QFETCH(Flags, flags);
    m_bins.minimumFrequency = minimum;
    CSpectrumAlarm alarm(&m_notifier);
    QCOMPARE(check(alarm, {spectrum.begin(), spectrum.end()}, bands(limits)), flags);
    QCOMPARE(m_notifier.calls.size(), flags.last() ? 1 : 0);
}

void tst_CSpectrumAlarm::everySpectrumGivesAMessage()
{
    CSpectrumAlarm alarm(&m_notifier);
    for (int i = 1; i <= 3; ++i) {
        QCOMPARE(check(alarm, {2}, bands({{10, 1}})), Flags{true});
        QCOMPARE(m_notifier.calls.size(), i);
    }
}

void tst_CSpectrumAlarm::quietTime()
{
    CSpectrumAlarm alarm(&m_notifier);
    auto* timer = alarm.findChild<QTimer*>();
    QVERIFY(timer != nullptr);
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 2000);
    QVERIFY(!timer->isSingleShot());
    QVERIFY(!alarm.IsQuiet());
    alarm.OnRangeTimerTimedOut();
    QVERIFY(alarm.IsQuiet());
    timer->setInterval(50);
    check(alarm, {1}, bands({{10, 1}}));
    QVERIFY(alarm.IsQuiet());
    QCOMPARE(timer->interval(), 50);
    // A violation begins the two seconds anew.
    check(alarm, {2}, bands({{10, 1}}));
    QVERIFY(!alarm.IsQuiet());
    QCOMPARE(timer->interval(), 2000);
}

void tst_CSpectrumAlarm::stopped()
{
    CSpectrumAlarm alarm(&m_notifier);
    alarm.Stop();
    QVERIFY(!alarm.findChild<QTimer*>()->isActive());
}

void tst_CSpectrumAlarm::pageTellsFrequencyExposureAndLimit()
{
    SpectralFixture f;
    f.loadLimits({{15, 100}, {100, 0.25}});
    setAlarm(f, CAlarm::Audio);
    const PagePointer page = makePage(f);
    // Far from the sine a bin on a whole number of periods has next to nothing; under the window, whose sides
    // are half as high, the bin before the sine has half of its height, which is half of the amplitude.
    f.deliver(SpectralFixture::sine(1, 20));
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls.size(), 2);
    const QStringList parts = f.notifier.calls.at(0).split(QLatin1Char('\n'));
    QCOMPARE(parts.size(), 3);
    QCOMPARE(parts.at(0), QStringLiteral("Spectrum is out-of-limit|Frequency = 19.000 Hz"));
    QVERIFY2(parts.at(1).startsWith(QStringLiteral("Exposure = 0.25")), qPrintable(parts.at(1)));
    QCOMPARE(parts.at(2), QStringLiteral("Limit = 0.2500"));
    QCOMPARE(f.notifier.calls.at(1), QStringLiteral("beep"));
    // With every block.
    f.deliver(SpectralFixture::sine(1, 20));
    QCOMPARE(f.notifier.calls.size(), 4);
}

void tst_CSpectrumAlarm::offLeavesTheFlagOfThePage()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.1}});
    const PagePointer page = makePage(f);
    page->AlarmParametersViewModel()->SetFlagNotification(true);
    f.deliver(SpectralFixture::sine(0.001, 20));
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    page->AlarmParametersViewModel()->SetFlagNotification(false);
    f.deliver(SpectralFixture::sine(5, 20));
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList());
}

void tst_CSpectrumAlarm::flagOfThePageFalls()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.1}});
    const PagePointer page = makePage(f);
    page->AlarmParametersViewModel()->SetSelectedStateIndex(3);
    f.deliver(SpectralFixture::sine(1, 20));
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
    f.deliver(SpectralFixture::sine(0.05, 20));
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
    QCOMPARE(f.notifier.calls, QStringList());
    // Limits that all lie below the lowest frequency are not compared.
    f.parameters().SetFrequencyMin(101);
    f.deliver(SpectralFixture::sine(1, 20));
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
}

void tst_CSpectrumAlarm::pageChecksNewBlocksOnly()
{
    SpectralFixture f;
    f.loadLimits({{100, 0.1}});
    setAlarm(f, CAlarm::Notification);
    f.manager().AddMeasureBlock(SpectralFixture::sine(1, 20));
    const PagePointer page = makePage(f);
    page->loadData();
    page->SetThreshold(5);
    QCOMPARE(f.notifier.calls, QStringList());
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
}

void tst_CSpectrumAlarm::pageComparesInItsUnit()
{
    SpectralFixture f;
    f.parameters().SetUnits(CUnits::NANO_TESLA);
    f.parameters().SetDisplayUnits(CUnits::NANO_TESLA);
    f.loadLimits({{100, 2}});
    setAlarm(f, CAlarm::FlagNotification);
    const PagePointer page = makePage(f);
    // 2 µT are 2000 nT.
    f.deliver(SpectralFixture::sine(1900, 20));
    QVERIFY(!page->AlarmParametersViewModel()->FlagNotification());
    f.deliver(SpectralFixture::sine(4200, 20));
    QVERIFY(page->AlarmParametersViewModel()->FlagNotification());
}

QTEST_MAIN(tst_CSpectrumAlarm)
#include "tst_CSpectrumAlarm.moc"
