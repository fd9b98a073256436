// SPDX-License-Identifier: GPL-3.0-or-later
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

/// The checker finds what is wrong with a plug-in, and nothing wrong with ours.
class tst_PluginCheck : public QObject
{
    Q_OBJECT

private slots:
    void findsOurPluginsClean_data();
    void findsOurPluginsClean();
    void findsFaults_data();
    void findsFaults();
    void refusesAWrongCommandLine();
};

namespace {

struct Result
{
    int exitCode = -1;
    QJsonObject report;
    QStringList codes;
};

Result check(const QStringList& arguments, const QString& options = QString())
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("KESTRIX_FAKE"), options);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(CHECKER), QStringList{QStringLiteral("--json")} + arguments);
    Result result;
    if (!process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitCode();
    result.report = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    const QJsonArray findings = result.report.value(QLatin1String("findings")).toArray();
    for (const QJsonValue& finding : findings)
        result.codes.append(finding.toObject().value(QLatin1String("code")).toString());
    return result;
}

} // namespace

void tst_PluginCheck::findsOurPluginsClean_data()
{
    QTest::addColumn<QString>("path");
    for (const char* path :
         {"instrument/KestrixSimulatedInstrument", "instrument/KestrixFileReplayInstrument",
          "mapper/KestrixSimulatedGantry", "mapper/KestrixSimulatedMover", "trigger/KestrixSimulatedTrigger"})
        QTest::newRow(path) << QStringLiteral(PLUGINS_PATH "/%1.so").arg(QLatin1String(path));
}

void tst_PluginCheck::findsOurPluginsClean()
{
    QFETCH(QString, path);
    // A busy machine must not look like a slow plug-in.
    const Result result = check({QStringLiteral("--slow"), QStringLiteral("5000"), QStringLiteral("--blocks"),
                                 QStringLiteral("2"), path});
    QVERIFY2(result.exitCode == 0, qPrintable(result.codes.join(QLatin1Char(' '))));
}

void tst_PluginCheck::findsFaults_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("exitCode");
    const auto row = [](const char* file, const char* options, const char* code, int exitCode = 1) {
        QTest::addRow("%s", code) << QString::fromLatin1(file) << QString::fromLatin1(options)
                                  << QString::fromLatin1(code) << exitCode;
    };
    row("no-factory/no-factory", "", "factory-missing");
    row("null-factory/null-factory", "", "factory-null", 0);
    row("instrument/fake-instrument", "renewObjects=1;blockCount=-1", "list-identity");
    row("instrument/fake-instrument", "announceAtStart=0;connect=false", "list-not-announced");
    row("instrument/fake-instrument", "serialNumbers=A,A;connect=false", "serial-duplicate");
    row("instrument/fake-instrument", "connect=throw", "connect-failed", 0);
    row("instrument/fake-instrument", "units=none;blockCount=-1", "units-empty");
    row("instrument/fake-instrument", "samplesPerBlock=3;blockCount=-1", "block-size");
    row("instrument/fake-instrument", "connectDelayMs=300;connect=false", "slow-call");
    row("instrument/fake-instrument", "blockCount=0", "no-block");
    row("mapper/fake-mapper", "ready=twice", "ready-twice");
    row("mapper/fake-mapper", "ready=never", "signal-missing");
    row("mapper/fake-mapper", "mapperType=1", "mapper-type");
    row("trigger/fake-trigger", "triggerName=", "name-empty");
    row("trigger/fake-trigger", "", "signal-not-seen", 0);
}

void tst_PluginCheck::findsFaults()
{
    QFETCH(QString, file);
    QFETCH(QString, options);
    QFETCH(QString, code);
    QFETCH(int, exitCode);
    const QStringList arguments{QStringLiteral("--blocks"),
                                QStringLiteral("2"),
                                QStringLiteral("--wait"),
                                QStringLiteral("0.3"),
                                QStringLiteral("--slow-connect"),
                                QStringLiteral("200"),
                                QStringLiteral(FAKES_PATH "/%1.so").arg(file)};
    const Result result = check(arguments, options);
    QVERIFY2(result.codes.contains(code), qPrintable(result.codes.join(QLatin1Char(' '))));
    QCOMPARE(result.exitCode, exitCode);
}

void tst_PluginCheck::refusesAWrongCommandLine()
{
    QCOMPARE(check({}).exitCode, 2);
    QCOMPARE(check({QStringLiteral("no-such-file")}).exitCode, 2);
    QCOMPARE(check({QStringLiteral("--slow"), QStringLiteral("x"), QStringLiteral(CHECKER)}).exitCode, 2);
}

QTEST_GUILESS_MAIN(tst_PluginCheck)
#include "tst_PluginCheck.moc"
