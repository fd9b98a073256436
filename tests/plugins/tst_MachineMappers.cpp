// SPDX-License-Identifier: GPL-3.0-or-later
#include "CGrblController.h"
#include "CGrblResponder.h"
#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"
#include "CMarlinResponder.h"
#include "MachineBench.h"
#include "PluginDriver.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <memory>

namespace {

const QString kGrblSettings = QStringLiteral("KestrixGrblMachine.ini");
const QString kMarlinSettings = QStringLiteral("KestrixMarlinMachine.ini");

/// What the factory of a library makes, of the class that it is known to have.
template <class Plugin> std::unique_ptr<Plugin> make(const char* path)
{
    QLibrary library(QString::fromUtf8(path));
    const auto factory = reinterpret_cast<CMapperPlugin* (*)()>(library.resolve("CreateMapperPlugin"));
    if (!factory)
        qFatal("%s: %s", path, qPrintable(library.errorString()));
    return std::unique_ptr<Plugin>(qobject_cast<Plugin*>(factory()));
}

void writePort(const QString& file, const CMachineResponder& machine, const QByteArray& more = {})
{
    writeSettings(file, "[Machine]\nPort=" + machine.Port().toUtf8() + "\nFeed=6000\nSettleMs=5\n" + more);
}

void moveTo(CMapperPluginStopAndGo& mapper, double x)
{
    CPosition position;
    COrientation orientation;
    position.SetX(x);
    mapper.MoveTo(position, orientation);
}

QDialog* stageDialog()
{
    return qobject_cast<QDialog*>(QApplication::activeModalWidget());
}

} // namespace

/// The mappers for real machines, out of their libraries.
class tst_MachineMappers : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        removeSettings(kGrblSettings);
        removeSettings(kMarlinSettings);
    }

    void kinds()
    {
        const auto grbl = make<CMapperPluginStopAndGo>(GRBL_PATH);
        const auto scan = make<CMapperPluginOnTheFly>(GRBL_SCAN_PATH);
        const auto marlin = make<CMapperPluginStopAndGo>(MARLIN_PATH);
        QVERIFY(grbl && scan && marlin);
        QCOMPARE(grbl->Name, QStringLiteral("GRBL machine"));
        QCOMPARE(grbl->MapperType, 2);
        QCOMPARE(scan->Name, QStringLiteral("GRBL on the fly"));
        QCOMPARE(scan->MapperType, 1);
        QCOMPARE(marlin->Name, QStringLiteral("Marlin machine"));
        QCOMPARE(marlin->MapperType, 2);
    }

    // The application chooses the first library beforehand: it must not be one that moves a machine.
    void firstMapperMovesNoMachine()
    {
        const QDir folder = QFileInfo(QStringLiteral(GRBL_PATH)).dir();
        const QStringList files = folder.entryList(QDir::Files, QDir::Type);
        QVERIFY(files.indexOf(QRegularExpression(QStringLiteral("^KestrixStage.*"))) > 0);
        QVERIFY2(files.first().startsWith(QStringLiteral("KestrixSimulated")), qPrintable(files.first()));
    }

    void nothingIsOpenedBeforeTheStart()
    {
        CGrblResponder machine;
        machine.Run();
        writePort(kGrblSettings, machine);
        const int numThreads = threadCount();
        const auto grbl = make<CMapperPluginStopAndGo>(GRBL_PATH);
        moveTo(*grbl, 5);
        grbl->Stop();
        grbl->Shutdown();
        QTest::qWait(20);
        QCOMPARE(machine.NumResets(), 0);
        QVERIFY(machine.Lines().isEmpty());
        QCOMPARE(threadCount(), numThreads);
    }

    void asksWhereThereAreNoSettings()
    {
        const ThreadLog log;
        CGrblResponder machine;
        machine.Run();
        const auto grbl = make<CMapperPluginStopAndGo>(GRBL_PATH);
        QSignalSpy ready(grbl.get(), &CMapperPluginStopAndGo::Ready);
        grbl->Start();
        moveTo(*grbl, 3);
        QTRY_VERIFY_WITH_TIMEOUT(stageDialog(), kLongWaitMs);
        stageDialog()->findChild<QComboBox*>(QStringLiteral("stagePort"))->setEditText(machine.Port());
        QTest::mouseClick(stageDialog()->findChild<QPushButton*>(QStringLiteral("stageAccept")),
                          Qt::LeftButton);
        QVERIFY(!stageDialog());
        // The place asked for meanwhile is gone to.
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, kLongWaitMs);
        QCOMPARE(grbl->GetPosition().X(), 3.0);
        grbl->Stop();
        // It does not ask twice.
        grbl->Start();
        QVERIFY(!stageDialog());
        moveTo(*grbl, 0);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, kLongWaitMs);
    }

    void refusedDialogLeavesThePageUsable()
    {
        const ThreadLog log;
        const auto scan = make<CMapperPluginOnTheFly>(GRBL_SCAN_PATH);
        scan->Start();
        QTRY_VERIFY_WITH_TIMEOUT(stageDialog(), kLongWaitMs);
        QTest::mouseClick(stageDialog()->findChild<QPushButton*>(QStringLiteral("stageCancel")),
                          Qt::LeftButton);
        QVERIFY(!stageDialog());
        QVERIFY(log.Contains("nothing will move"));
        scan->Stop();
        QVERIFY(!QFileInfo::exists(StageSettings::PathOf(kGrblSettings)));
        // The end of the session takes the question away.
        const auto marlin = make<CMapperPluginStopAndGo>(MARLIN_PATH);
        marlin->Start();
        QTRY_VERIFY_WITH_TIMEOUT(stageDialog(), kLongWaitMs);
        marlin->Stop();
        QVERIFY(!stageDialog());
    }

    // Two mappers share the machine; each gets the port when its turn comes.
    void portIsHandedOver()
    {
        const ThreadLog log;
        CGrblResponder machine;
        machine.Run();
        writePort(kGrblSettings, machine, "Yaw=30\n[Scan]\nToX=4\nLines=1\nSpacing=2\n");
        const auto grbl = make<CMapperPluginStopAndGo>(GRBL_PATH);
        const auto scan = make<CMapperPluginOnTheFly>(GRBL_SCAN_PATH);
        QSignalSpy ready(grbl.get(), &CMapperPluginStopAndGo::Ready);
        QList<double> places;
        connect(
            scan.get(), &CMapperPluginOnTheFly::Acquire, this,
            [&places](const CPosition& position, const COrientation& orientation) {
                places.append(position.X());
                QCOMPARE(orientation.Yaw(), 30.0);
            },
            Qt::QueuedConnection);
        for (int round = 1; round <= 2; ++round) {
            grbl->Start();
            moveTo(*grbl, 1);
            QTRY_COMPARE_WITH_TIMEOUT(ready.count(), round, kLongWaitMs);
            grbl->Stop();
            places.clear();
            scan->Start();
            QTRY_COMPARE_WITH_TIMEOUT(places.size(), 3, kLongWaitMs);
            QCOMPARE(scan->GetOrientation().Yaw(), 30.0);
            scan->Stop();
        }
        QVERIFY(!log.Contains("cannot be opened"));
    }

    // Each with a machine and a settings folder of its own, all at the same time.
    void pluginsKeepTheContract()
    {
        struct Check
        {
            QString library;
            std::unique_ptr<CMachineResponder> machine;
            QTemporaryDir home{};
            QProcess process{};
        };
        std::array<Check, 3> checks{{{QStringLiteral(GRBL_PATH), std::make_unique<CGrblResponder>()},
                                     {QStringLiteral(GRBL_SCAN_PATH), std::make_unique<CGrblResponder>()},
                                     {QStringLiteral(MARLIN_PATH), std::make_unique<CMarlinResponder>()}}};
        for (Check& check : checks) {
            check.machine->Run();
            const QByteArray settings = "[Machine]\nPort=" + check.machine->Port().toUtf8() +
                                        "\nFeed=6000\nSettleMs=5\n"
                                        "[Scan]\nToX=10\nLines=2\nSpacing=2\nFeed=3000\n";
            QVERIFY(QDir(check.home.path()).mkdir(QStringLiteral("Kestrix")));
            for (const QString& name : {kGrblSettings, kMarlinSettings}) {
                QFile file(check.home.filePath(QStringLiteral("Kestrix/") + name));
                QVERIFY(file.open(QIODevice::WriteOnly) && file.write(settings) == settings.size());
            }
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("XDG_DATA_HOME"), check.home.path());
            check.process.setProcessEnvironment(environment);
            check.process.setProcessChannelMode(QProcess::MergedChannels);
            // A busy machine must not look like a slow plug-in.
            check.process.start(QStringLiteral(PLUGIN_CHECK_PATH),
                                {QStringLiteral("--strict"), QStringLiteral("--slow"), QStringLiteral("5000"),
                                 QStringLiteral("--wait"), QStringLiteral("30"), check.library});
        }
        for (Check& check : checks) {
            QVERIFY(check.process.waitForFinished(3 * kLongWaitMs));
            const QByteArray output = check.process.readAll();
            QVERIFY2(check.process.exitStatus() == QProcess::NormalExit && check.process.exitCode() == 0,
                     output.constData());
            QVERIFY(!check.machine->Lines().isEmpty());
        }
    }
};

QTEST_MAIN(tst_MachineMappers)
#include "tst_MachineMappers.moc"
