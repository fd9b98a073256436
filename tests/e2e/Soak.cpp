// SPDX-License-Identifier: GPL-3.0-or-later
// An hour on one page in fewer minutes: an instrument that delivers in bursts, a record that runs, a user who
// does anything, and an account of what the process holds. One page for each run, named as the test function;
// KESTRIX_SOAK_MINUTES says how long, and KESTRIX_SOAK_HOURS how much of ordinary work must have passed then:
// the run goes on until it has. scripts/soak.sh runs all of them.
#include "CApplication.h"
#include "COperationMapping.h"
#include "COperationMeasure.h"
#include "EndToEndTest.h"
#include "RandomUser.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTest>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

constexpr quint32 kSeed = 20240518;
/// What an hour brings with the parameters of a first start.
struct Work
{
    double blocks = 0;
    double samples = 0;
    double actions = 0;
};
/// 20 samples a second in ten blocks, and a user who does something every two seconds.
constexpr Work kHourOfMeasuring{36000, 72000, 1800};
/// Blocks of ten samples. The simulated gantry needs 110 ms from place to place if they are 10 mm apart: 50
/// to move, 50 to settle, 10 for the block.
constexpr Work kHourOfMapping{32700, 327000, 1800};
/// Past so many times the planned minutes a run that is still short of its work has failed.
constexpr int kMaxOverrun = 4;
/// Samples that are kept, so that the history is full soon.
constexpr int kHistory = 50000;
constexpr double kAllowedGrowth = 0.05;
constexpr double kAllowedGrowthMb = 8;

struct Holding
{
    double minutes = 0;
    double residentMb = 0;
    double heapMb = 0;
    int handles = 0;
    int threads = 0;
    int objects = 0;
    int blocks = 0;
};

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    constexpr int kPageKb = 4;
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ')[1].toDouble() * kPageKb / 1024 : 0;
}

double heapMegabytes()
{
#ifdef __GLIBC__
    return static_cast<double>(mallinfo2().uordblks) / (1 << 20);
#else
    return 0;
#endif
}

int countEntries(const char* directory)
{
    return QDir(QLatin1String(directory))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace

class Soak : public EndToEndTest
{
    Q_OBJECT

private:
    QVector<Holding> m_holdings;
    qint64 m_delivered = 0;
    qint64 m_samples = 0;
    int m_actions = 0;
    int m_saved = 0;
    bool m_isMapping = false;

    CMainViewModel& shell() { return *scenario().Application()->MainViewModel(); }
    static QString recordPath() { return QDir::current().filePath(QStringLiteral("soak.qdr.xml")); }
    void command(const char* name) { QMetaObject::invokeMethod(scenario().PageViewModel(), name); }

    void look(double minutes)
    {
        Holding now;
        now.minutes = minutes;
        now.residentMb = residentMegabytes();
        now.heapMb = heapMegabytes();
        now.handles = countEntries("/proc/self/fd");
        now.threads = countEntries("/proc/self/task");
        now.objects = driver().Window()->findChildren<QObject*>().size() +
                      scenario().Application()->QmlEngine()->findChildren<QObject*>().size();
        now.blocks = blocks();
        m_holdings.append(now);
        QTextStream(stdout) << QStringLiteral(
                                   "%1 min  %2 MB resident  %3 MB heap  %4 handles  %5 threads  %6 "
                                   "objects  %7 blocks kept\n")
                                   .arg(minutes, 6, 'f', 2)
                                   .arg(now.residentMb, 6, 'f', 1)
                                   .arg(now.heapMb, 6, 'f', 1)
                                   .arg(now.handles)
                                   .arg(now.threads)
                                   .arg(now.objects)
                                   .arg(now.blocks);
        // Whoever waits for it wants to look on.
        std::fflush(stdout);
    }

    /// Whatever state the page is in: recording again.
    void record()
    {
        if (scenario().Flag("IsIdleWithData")) {
            command("end");
            return;
        }
        // A map is a record by itself.
        if (!m_isMapping && !scenario().Flag("IsRecording"))
            command("record");
        if (driver().IsVisible(QStringLiteral("resumeButton")))
            command("resume");
    }

    void endRecord(RandomUser& user)
    {
        command("stop");
        if (!scenario().Flag("IsIdleWithData"))
            return;
        if (user.UpTo(2) == 0) {
            // The dialog would ask whether to overwrite the one before.
            QFile::remove(recordPath());
            command("save");
            ++m_saved;
        } else {
            command(m_isMapping ? "end" : "start");
        }
    }

    void act(RandomUser& user, void (CMainViewModel::*display)())
    {
        switch (user.UpTo(12)) {
        case 0:
        case 1:
        case 2:
            return user.OpenAnyTab();
        case 3:
        case 4:
        case 5:
            return user.ActOnThePlot();
        case 6:
            return user.ChangeLayout();
        case 7:
            return user.UpTo(4) == 0 ? (shell().*display)() : user.Press("resetMaximumButton");
        case 8:
            return user.UpTo(8) == 0 ? endRecord(user) : user.GiveCommand({"hold", "resume"});
        case 9:
            scenario().RecordingManager()->setProperty("MeasComment", QString::number(user.UpTo(100)));
            return;
        default:
            record();
        }
    }

    /// Once warm, nothing may grow: the second quarter of the run against the last one.
    void verifyFlat()
    {
        QVERIFY2(m_holdings.size() >= 8, "too short to tell anything");
        const int quarter = m_holdings.size() / 4;
        const auto median = [&](int begin, double Holding::*member) {
            QVector<double> values;
            for (int i = begin; i < begin + quarter; ++i)
                values.append(m_holdings[i].*member);
            std::sort(values.begin(), values.end());
            return values[values.size() / 2];
        };
        const auto smallest = [&](int begin, int Holding::*member) {
            int value = m_holdings[begin].*member;
            for (int i = begin; i < begin + quarter; ++i)
                value = std::min(value, m_holdings[i].*member);
            return value;
        };
        const int last = m_holdings.size() - quarter;
        for (double Holding::*member : {&Holding::residentMb, &Holding::heapMb}) {
            const double before = median(quarter, member);
            const double after = median(last, member);
            QVERIFY2(after < before * (1 + kAllowedGrowth) + kAllowedGrowthMb,
                     qPrintable(QStringLiteral("%1 MB grew to %2").arg(before).arg(after)));
        }
        // A moment between two states may have one less than all others; a leak in an hour's actions has many
        // more.
        QVERIFY(smallest(last, &Holding::handles) <= smallest(quarter, &Holding::handles) + 1);
        QVERIFY(smallest(last, &Holding::threads) <= smallest(quarter, &Holding::threads) + 1);
    }

    static double fromEnvironment(const char* name, double fallback)
    {
        bool isNumber = false;
        const double value = qEnvironmentVariable(name).toDouble(&isNumber);
        return isNumber ? value : fallback;
    }

    bool hasDone(const Work& work) const
    {
        return static_cast<double>(m_delivered) >= work.blocks &&
               static_cast<double>(m_samples) >= work.samples && m_actions >= work.actions;
    }

    template <class Block> void count(const QSharedPointer<Block>& block)
    {
        ++m_delivered;
        m_samples += static_cast<qint64>(block->Results.size());
    }

    void soak(void (CMainViewModel::*display)())
    {
        const double minutes = fromEnvironment("KESTRIX_SOAK_MINUTES", 1);
        const double hours = fromEnvironment("KESTRIX_SOAK_HOURS", 1);
        const Work& hour = m_isMapping ? kHourOfMapping : kHourOfMeasuring;
        const Work work{hour.blocks * hours, hour.samples * hours, hour.actions * hours};
        // In the last two of ten seconds ten times as much: 140 blocks and 2,800 samples a second on average.
        Scenario::WriteSimulationSettings(
            QStringLiteral("[Misbehaviour]\nBurstIntervalS=10\nBurstLengthS=2\nEmptyBlockEvery=97\n"));
        Scenario::WriteMeasureSettings(QStringLiteral(
            "<Units>µT</Units><AcquisitionRate>1000</AcquisitionRate><DisplayRate>50</DisplayRate>"
            "<TriggerMode>Continuous</TriggerMode>"));
        Scenario::WriteApplicationSettings(
            QStringLiteral("<MeasurementMaxMeasurementCount>%1</MeasurementMaxMeasurementCount>"
                           "<MappingMaxMeasurementCount>%1</MappingMaxMeasurementCount>")
                .arg(kHistory));
        // Forty thousand places, one after the other without a rest.
        Scenario::WriteMapperSettings(QStringLiteral("[Gantry]\nSpeed=1000000\nSettleMs=0\n"));
        Scenario::WriteMappingSettings(
            QStringLiteral("<Units>µT</Units><AcquisitionRate>1000</AcquisitionRate>"
                           "<DisplayRate>50</DisplayRate><TriggerMode>Immediate</TriggerMode>"),
            QStringLiteral("<Mapper>Simulated gantry</Mapper><Source>Cartesian</Source>"
                           "<MAPPING_POSITION_PARAMETERS>"
                           "<X><Start>-100</Start><Stop>100</Stop><Step_Size>1</Step_Size></X>"
                           "<Y><Start>-100</Start><Stop>100</Stop><Step_Size>1</Step_Size></Y>"
                           "<Z><Start>0</Start><Stop>0</Stop><Step_Size>1</Step_Size></Z>"
                           "</MAPPING_POSITION_PARAMETERS>"));
        startWithDefaultInstrument();
        RandomUser user(scenario(), kSeed);
        answers().AnswerAlways(kQuitQuestion, [] { return QMessageBox::Ok; });
        answers().AnswerFileDialogAlways(QStringLiteral("Save File"), recordPath());
        (shell().*display)();
        if (auto* mapping = qobject_cast<COperationMapping*>(scenario().ActiveOperation()))
            connect(mapping, &COperationMapping::NewMeasure, this, &Soak::count<CMeasureBlockMapping>);
        else
            connect(qobject_cast<COperationMeasure*>(scenario().ActiveOperation()),
                    &COperationMeasure::NewMeasure, this, &Soak::count<CMeasureBlock>);
        record();

        QElapsedTimer clock;
        clock.start();
        const double lookEvery = std::min(0.25, minutes / 20);
        const auto elapsed = [&clock] { return static_cast<double>(clock.elapsed()) / 60000; };
        const int longestPauseMs =
            std::max(60, static_cast<int>(minutes * 60000 / std::max(work.actions, 1.0)));
        while (elapsed() < minutes || (!hasDone(work) && elapsed() < minutes * kMaxOverrun)) {
            if (elapsed() >= m_holdings.size() * lookEvery)
                look(elapsed());
            act(user, display);
            ++m_actions;
            QTest::qWait(user.UpTo(longestPauseMs));
        }
        look(elapsed());
        QTextStream(stdout) << QStringLiteral(
                                   "%1 actions, %2 blocks of %3 samples delivered, %4 records saved\n")
                                   .arg(m_actions)
                                   .arg(m_delivered)
                                   .arg(m_samples)
                                   .arg(m_saved);
        QVERIFY2(hasDone(work), "less than what the hours would have brought");
        verifyFlat();
        QVERIFY(scenario().CloseWindow());
    }

private slots:
    void meter() { soak(&CMainViewModel::displayMeterPage); }
    void spectrum() { soak(&CMainViewModel::displaySpectrumPage); }
    void acAnalysis() { soak(&CMainViewModel::displayAcAnalysisPage); }
    void mapping()
    {
        m_isMapping = true;
        soak(&CMainViewModel::displayMappingPage);
    }
};

END_TO_END_MAIN(Soak)
#include "Soak.moc"
