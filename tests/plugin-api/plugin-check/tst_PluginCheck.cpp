// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckerPool.h"

#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>

/// The checker finds what is wrong with a plug-in, and nothing wrong with ours.
class tst_PluginCheck : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void findsOurPluginsClean_data();
    void findsOurPluginsClean();
    void findsFaults_data();
    void findsFaults();
    void everyCodeIsFound();
    void tellsWhatHappenedAtTheEnd();
    void refusesAWrongCommandLine();

private:
    struct Fault
    {
        QString code;
        int exitCode = 1;
        QStringList more; ///< codes that may come with it
        int run = 0;      ///< index in m_runs
    };

    int addRun(const QStringList& arguments, const QString& fake = QString(), const QString& bad = QString());
    void addFault(const char* code, int run, int exitCode = 1, const QStringList& more = {});
    void addBad(const char* kind, const QVector<const char*>& codes, int exitCode = 1);
    void addBadInstruments();
    void addOthers();
    void writeRecording() const;
    QString patchedPlugin(const char* name, const QByteArray& from, const QByteArray& to);
    const CheckerRun& runOf(const char* code) const;

    QTemporaryDir m_directory;
    QVector<CheckerRun> m_runs;
    QVector<Fault> m_faults;
    QVector<QPair<QString, int>> m_ours; ///< name and run
};

namespace {

// A busy machine must not look like a slow plug-in.
const QStringList kPatient{QStringLiteral("--slow"), QStringLiteral("20000"), QStringLiteral("--blocks"),
                           QStringLiteral("2")};
// What does not come is not waited for long, where that is the fault.
const QStringList kImpatient{QStringLiteral("--wait"), QStringLiteral("0.3")};

QStringList bad(const char* kind, const QStringList& options = {})
{
    return kPatient + QStringList{QStringLiteral("--kind"), QLatin1String(kind)} + options +
           QStringList{QStringLiteral(BAD_PLUGIN)};
}

} // namespace

int tst_PluginCheck::addRun(const QStringList& arguments, const QString& fake, const QString& bad)
{
    CheckerRun run;
    run.arguments = arguments;
    run.fake = fake;
    run.bad = bad;
    m_runs.append(run);
    return m_runs.size() - 1;
}

void tst_PluginCheck::addFault(const char* code, int run, int exitCode, const QStringList& more)
{
    Fault fault;
    fault.code = QLatin1String(code);
    fault.exitCode = exitCode;
    fault.more = more;
    fault.run = run;
    m_faults.append(fault);
}

void tst_PluginCheck::addBad(const char* kind, const QVector<const char*>& codes, int exitCode)
{
    for (const char* code : codes)
        addFault(code, addRun(bad(kind), QString(), QLatin1String(code)), exitCode);
}

void tst_PluginCheck::addBadInstruments()
{
    constexpr int kNoViolation = 0;
    constexpr int kCrash = 3;
    constexpr int kHang = 4;
    const auto impatient = [this](const char* code, int exitCode, const QStringList& options = {},
                                  const QStringList& more = {}) {
        addFault(code, addRun(bad("instrument", options + kImpatient), QString(), QLatin1String(code)),
                 exitCode, more);
    };
    const QStringList slow{QStringLiteral("--slow"), QStringLiteral("300")};
    // A loaded machine may take seconds from the start of the process to the call.
    addFault("hang",
             addRun(bad("instrument", {QStringLiteral("--call-limit"), QStringLiteral("6")}), QString(),
                    QStringLiteral("hang")),
             kHang);
    addBad("instrument", {"crash"}, kCrash);
    impatient("no-block", 1);
    impatient("external-no-block", kNoViolation);
    impatient("apply-missed", 1);
    impatient("list-not-announced", 1);
    impatient("slow-call", 1, slow, {QStringLiteral("main-thread-blocked")});
    addFault("main-thread-blocked",
             addRun(bad("instrument", slow), QString(), QStringLiteral("main-thread-blocked")), 1,
             {QStringLiteral("slow-call")});
    // The one that measures is none of those that are stopped in the end.
    addFault("list-identity", addRun(bad("instrument"), QString(), QStringLiteral("list-identity")), 1,
             {QStringLiteral("still-running"), QStringLiteral("block-after-stop")});
    addFault("instrument-missing",
             addRun(bad("instrument", {QStringLiteral("--instrument"), QStringLiteral("NONE")})));
    addBad("instrument", {"exception",           "exit-status",        "stop-not-idempotent",
                          "provider-null",       "list-null",          "serial-empty",
                          "serial-duplicate",    "enum-value",         "state",
                          "reconnect-failed",    "units-empty",        "unit-invalid",
                          "unit-order",          "range-invalid",      "triggers-empty",
                          "trigger-order",       "list-duplicate",     "bound-inverted",
                          "bound-default",       "bound-invalid",      "property-silent",
                          "not-running",         "still-running",      "block-null",
                          "sample-null",         "block-size",         "block-changed",
                          "block-after-stop",    "timestamp-invalid",  "nanoseconds-range",
                          "timestamp-backwards", "immediate-rate",     "apply-early",
                          "unit-ignored",        "list-update-missing"});
    addBad("instrument",
           {"thread-left", "list-empty", "connect-failed", "disconnect-threw", "identity-empty",
            "ranges-empty", "range-order", "trigger-position", "bound-frequency", "bound-averaging",
            "timestamp-equal", "timestamp-fraction", "sample-period", "uncertainty-negative", "converted-set",
            "unit-stale"},
           kNoViolation);
}

void tst_PluginCheck::addOthers()
{
    addBad("mapper", {"mapper-type", "position-invalid", "ready-twice", "ready-unasked"});
    addBad("mapper", {"position-off"}, 0);
    addFault("signal-missing",
             addRun(bad("mapper", kImpatient), QString(), QStringLiteral("signal-missing")));
    addBad("trigger", {"name-empty", "wrong-class", "signal-after-stop"});
    addBad("trigger", {"factory-null"}, 0);
    const auto impatient = [this](const char* code, int exitCode, const QStringList& more = {}) {
        addFault(code, addRun(bad("trigger", kImpatient), QString(), QLatin1String(code)), exitCode, more);
    };
    impatient("signal-not-seen", 0);
    impatient("restart-failed", 1, {QStringLiteral("shutdown-final")});
    impatient("shutdown-final", 1);
    // Its timer stands still there.
    impatient("object-thread", 1, {QStringLiteral("signal-not-seen")});

    const QStringList trigger = kPatient + QStringList{QStringLiteral("--kind"), QStringLiteral("trigger")};
    const QString version =
        patchedPlugin("version.so", "libkestrix-plugin-api.so.1", "libkestrix-plugin-api.so.9");
    const QString symbol = patchedPlugin("symbol.so", "_Z12ConvertUnits", "_Z12ConvertNoone");
    addFault("contract-version", addRun(trigger + QStringList{version}), 1, {QStringLiteral("load-failed")});
    addFault("unresolved-symbol", addRun(trigger + QStringList{symbol}));
    QFile text(m_directory.filePath(QStringLiteral("text.so")));
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no library") > 0);
    addFault("load-failed", addRun({text.fileName()}));
    addFault("factory-missing", addRun({QStringLiteral(FAKES_PATH "/no-factory/no-factory.so")}));
}

QString tst_PluginCheck::patchedPlugin(const char* name, const QByteArray& from, const QByteArray& to)
{
    QFile original(QStringLiteral(BAD_PLUGIN));
    if (!original.open(QIODevice::ReadOnly))
        return QString();
    QByteArray content = original.readAll();
    // Of the same length: everything else stays where it is.
    content.replace(from, to);
    QFile copy(m_directory.filePath(QLatin1String(name)));
    if (!content.contains(to) || !copy.open(QIODevice::WriteOnly))
        return QString();
    copy.write(content);
    return copy.fileName();
}

/// The file-replay plug-in has no instrument without one.
void tst_PluginCheck::writeRecording() const
{
    const QDir directory(m_directory.path());
    QVERIFY(directory.mkdir(QStringLiteral("recordings")));
    QFile recording(directory.filePath(QStringLiteral("recordings/walk.csv")));
    QVERIFY(recording.open(QIODevice::WriteOnly));
    recording.write("t_s,bx_uT,by_uT,bz_uT\n");
    constexpr int kNumSamples = 2000;
    constexpr double kRate = 200;
    for (int i = 0; i < kNumSamples; ++i)
        recording.write(QByteArray::number(i / kRate, 'f', 3) + ",20,0,40\n");
    const QDir settings(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QVERIFY(settings.mkpath(QStringLiteral("Kestrix")));
    QFile ini(settings.filePath(QStringLiteral("Kestrix/KestrixFileReplay.ini")));
    QVERIFY(ini.open(QIODevice::WriteOnly));
    ini.write("[Replay]\nLoop=true\nFolder=" + directory.filePath(QStringLiteral("recordings")).toUtf8());
}

void tst_PluginCheck::initTestCase()
{
    QVERIFY(m_directory.isValid());
    writeRecording();
    // What takes longest comes first.
    for (const char* path :
         {"instrument/KestrixSimulatedInstrument", "instrument/KestrixFileReplayInstrument",
          "mapper/KestrixSimulatedGantry", "mapper/KestrixSimulatedMover", "trigger/KestrixSimulatedTrigger"})
        m_ours.append(
            {QLatin1String(path),
             addRun(kPatient + QStringList{QStringLiteral(PLUGINS_PATH "/%1.so").arg(QLatin1String(path))})});
    // Without a fault of its own the bad plug-in is clean, in all its three kinds.
    addFault("several-factories", addRun(kPatient + QStringList{QStringLiteral(BAD_PLUGIN)}), 0);
    addBadInstruments();
    addOthers();
    CheckerPool::RunAll(m_runs);
}

void tst_PluginCheck::findsOurPluginsClean_data()
{
    QTest::addColumn<int>("run");
    for (const auto& ours : qAsConst(m_ours))
        QTest::newRow(qPrintable(ours.first)) << ours.second;
}

void tst_PluginCheck::findsOurPluginsClean()
{
    QFETCH(int, run);
    // A recording knows nothing of the ranges that it was made in.
    m_runs[run].codes.removeAll(QStringLiteral("ranges-empty"));
    QCOMPARE(m_runs[run].codes, QStringList());
    QCOMPARE(m_runs[run].exitCode, 0);
}

void tst_PluginCheck::findsFaults_data()
{
    QTest::addColumn<int>("fault");
    for (int i = 0; i < m_faults.size(); ++i)
        QTest::addRow("%s %d", qPrintable(m_faults[i].code), i) << i;
}

void tst_PluginCheck::findsFaults()
{
    QFETCH(int, fault);
    const Fault& expected = m_faults[fault];
    const CheckerRun& run = m_runs[expected.run];
    const QByteArray found = (run.codes.join(QLatin1Char(' ')) + QLatin1Char('\n') +
                              run.report.value(QLatin1String("output")).toString())
                                 .toUtf8();
    QVERIFY2(run.codes.contains(expected.code), found.constData());
    QCOMPARE(run.exitCode, expected.exitCode);
    // Nothing else is wrong with it.
    for (const QString& code : run.codes)
        QVERIFY2(code == expected.code || expected.more.contains(code), found.constData());
}

void tst_PluginCheck::everyCodeIsFound()
{
    QStringList wanted;
    for (const Fault& fault : qAsConst(m_faults))
        wanted.append(fault.code);
    QProcess process;
    process.start(QStringLiteral(CHECKER), {QStringLiteral("--codes")});
    QVERIFY(process.waitForFinished());
    const QStringList lines =
        QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY(lines.size() > 70);
    for (const QString& line : lines) {
        const QString code = line.simplified().section(QLatin1Char(' '), 1, 1);
        QVERIFY2(wanted.contains(code), qPrintable(code));
    }
}

const CheckerRun& tst_PluginCheck::runOf(const char* code) const
{
    const auto isIt = [code](const Fault& fault) { return fault.code == QLatin1String(code); };
    return m_runs[std::find_if(m_faults.cbegin(), m_faults.cend(), isIt)->run];
}

void tst_PluginCheck::tellsWhatHappenedAtTheEnd()
{
    const auto detailOf = [this](const char* code) {
        const QJsonArray findings = runOf(code).report.value(QLatin1String("findings")).toArray();
        return findings.first().toObject().value(QLatin1String("detail")).toString();
    };
    // The call that did not return is named.
    QVERIFY2(detailOf("crash").startsWith(QLatin1String("Start()")), qPrintable(detailOf("crash")));
    QCOMPARE(detailOf("hang"), QStringLiteral("Start()"));
    QCOMPARE(detailOf("exception"), QStringLiteral("Start() threw: told to throw"));
    QCOMPARE(detailOf("exit-status"), QStringLiteral("exit code 5"));
    QCOMPARE(detailOf("contract-version"), QStringLiteral("built for version 9, this is version 1"));
}

void tst_PluginCheck::refusesAWrongCommandLine()
{
    QVector<CheckerRun> runs(3);
    runs[1].arguments = QStringList{QStringLiteral("no-such-file")};
    runs[2].arguments = QStringList{QStringLiteral("--slow"), QStringLiteral("x"), QStringLiteral(CHECKER)};
    CheckerPool::RunAll(runs);
    for (const CheckerRun& run : qAsConst(runs))
        QCOMPARE(run.exitCode, 2);
}

QTEST_GUILESS_MAIN(tst_PluginCheck)
#include "tst_PluginCheck.moc"
