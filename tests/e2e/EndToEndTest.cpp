// SPDX-License-Identifier: GPL-3.0-or-later
#include "EndToEndTest.h"

#include "InitResources.h"
#include "PatientWait.h"
#include "ProcessSetup.h"
#include "SettingsDirectoryPath.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>

const QString EndToEndTest::kQuitQuestion =
    QStringLiteral("Are you sure you want to quit the current operation?");
const QString EndToEndTest::kSimulated = QStringLiteral("SIM-0001");

void EndToEndTest::init()
{
    // What an earlier run of the test left in its directories.
    QDir(SettingsDirectoryPath).removeRecursively();
    const QStringList leftovers =
        QDir::current().entryList({QStringLiteral("*.xml"), QStringLiteral("*.csv")}, QDir::Files);
    for (const QString& file : leftovers)
        QFile::remove(file);
    m_scenario = std::make_unique<Scenario>();
}

void EndToEndTest::cleanup()
{
    const QStringList problems = m_scenario->Problems();
    const bool hasWaitingAnswer = !answers().IsDone();
    m_scenario.reset();
    QVERIFY2(problems.isEmpty(), qPrintable(problems.join(QLatin1Char('\n'))));
    QVERIFY2(!hasWaitingAnswer, "a dialog that was expected did not come");
}

void EndToEndTest::connectFirstInstrument()
{
    QVERIFY(driver().WaitFor(QStringLiteral("connectButton0")));
    QVERIFY(driver().Click(QStringLiteral("connectButton0")));
    QVERIFY(driver().WaitFor(QStringLiteral("disconnectButton0")));
}

void EndToEndTest::openMeter()
{
    QVERIFY(driver().Click(QStringLiteral("meterMenuButton")));
    QVERIFY(driver().WaitFor(QStringLiteral("resumeButton")));
}

void EndToEndTest::startWithDefaultInstrument(Scenario::Plugins plugins)
{
    Scenario::WriteDefaultInstrument(QStringLiteral("Simulated instrument"), kSimulated);
    m_scenario->Start(plugins);
    QVERIFY(driver().WaitFor(QStringLiteral("meterPage")));
}

void EndToEndTest::makeRecord(int count)
{
    QVERIFY(driver().Click(QStringLiteral("recordButton")));
    QVERIFY(driver().Click(QStringLiteral("resumeButton")));
    QTRY_VERIFY_WITH_TIMEOUT(blocks() >= count, 60000);
    QVERIFY(driver().Click(QStringLiteral("stopButton")));
    QVERIFY(m_scenario->Flag("IsIdleWithData"));
}

QString EndToEndTest::saveRecord(const QString& name)
{
    const QString path = QDir::current().filePath(name);
    answers().ExpectFileDialog(QStringLiteral("Save File"), path);
    if (!driver().Click(QStringLiteral("saveButton")))
        return {};
    return QTest::qWaitFor([&] { return answers().IsDone(); }, kLongWaitMs) ? path : QString();
}

void EndToEndTest::endAndLoad(const QString& path, int recorded)
{
    answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
    QVERIFY(driver().Click(QStringLiteral("endButton")));
    QTRY_COMPARE(blocks(), 0);
    answers().ExpectFileDialog(QStringLiteral("Open File"), path);
    QVERIFY(driver().Click(QStringLiteral("loadButton")));
    QTRY_COMPARE(blocks(), recorded);
    QVERIFY(scenario().Flag("IsDataLoaded"));
    QCOMPARE(driver().Text(QStringLiteral("blockLine"), QStringLiteral("value")), QString::number(recorded));
}

int runEndToEnd(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& make)
{
    prepareProcess();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, true);
    InitResources();
    const QApplication application(argc, argv);
    // The window closes in the middle of a test function.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const std::unique_ptr<QObject> test = make();
    return QTest::qExec(test.get(), argc, argv);
}
