// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationDirPath.h"
#include "CApplication.h"
#include "SettingsDirectoryPath.h"
#include "ShellTestSupport.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

/// What becomes of a message: log file, log list and status bar line, from every thread and at every time.
class tst_MessageHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void classification_data();
    void classification();
    void noiseIsDropped_data();
    void noiseIsDropped();
    void noiseWordsOutsideWarningsStay();
    void previousHandlerGetsAll();
    void qmlWarningKeepsItsLevelInTheFile();
    void minLevelHoldsBackTheLine();
    void lineIsUpdatedOnChange();
    void historyIsLimited();
    void listenerThatLogs();
    void listenerOfTheLineThatLogs();
    void listenerThatLogsThroughQt();
    void messagesOfOtherThreads();
    void otherThreadsWhileTheApplicationEnds();
    void waitingMessagesEndWithTheApplication();

private:
    CMainViewModel* main() const { return m_application->MainViewModel(); }
    CLogMessageList* list() const { return main()->LogMessageList(); }

    QString text(int row) const { return list()->index(row).data(CLogMessageList::MessageRole).toString(); }

    QStringList texts(int firstRow) const
    {
        QStringList result;
        for (int row = firstRow; row < list()->rowCount(); ++row)
            result << text(row);
        return result;
    }

    static QString logFile()
    {
        QFile file(SettingsDirectoryPath + QLatin1String("/Kestrix.log"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    void log(QtMsgType type, const char* text) const
    {
        m_application->messageHandler(type, QMessageLogContext("file.cpp", 12, "f()", "default"),
                                      QString::fromUtf8(text));
    }

    QTemporaryDir m_folder;
    QPointer<CApplication> m_application;
};

void tst_MessageHandler::initTestCase()
{
    ApplicationDirPath = m_folder.path();
    // The start is quick, since the plug-in reports at once.
    QVERIFY(
        QFile::link(QStringLiteral(KESTRIX_TEST_PLUGINS_DIR), m_folder.filePath(QStringLiteral("kestrix"))));
}

void tst_MessageHandler::init()
{
    m_application = CApplication::Instance();
    m_application->Settings()->SetLogMaxHistoryCount(100000);
    m_application->Initialize();
}

void tst_MessageHandler::cleanup()
{
    if (m_application)
        m_application->onAboutToQuit();
    deleteDeferred();
}

void tst_MessageHandler::classification_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("levelText");
    QTest::addColumn<int>("level");
    QTest::newRow("debug") << int(QtDebugMsg) << "a"
                           << "DEBUG" << 0;
    QTest::newRow("info") << int(QtInfoMsg) << "qml"
                          << "INFO" << 1;
    QTest::newRow("warning, qrc:") << int(QtWarningMsg) << "qrc:/Main.qml:3"
                                   << "DEBUG" << 0;
    QTest::newRow("warning, QQuick") << int(QtWarningMsg) << "in QQuickText"
                                     << "DEBUG" << 0;
    QTest::newRow("warning, qml") << int(QtWarningMsg) << "a qml thing"
                                  << "DEBUG" << 0;
    QTest::newRow("warning") << int(QtWarningMsg) << "%1 is not there"
                             << "WARN" << 2;
    QTest::newRow("critical") << int(QtCriticalMsg) << "c"
                              << "CRIT" << 3;
    QTest::newRow("fatal") << int(QtFatalMsg) << "f"
                           << "FATAL" << 4;
    QTest::newRow("none of the five") << 99 << "n"
                                      << "DEBUG" << 0;
}

void tst_MessageHandler::classification()
{
    QFETCH(int, type);
    QFETCH(QString, message);
    QFETCH(QString, levelText);
    QFETCH(int, level);
    const int row = list()->rowCount();
    QSignalSpy line(main(), &CMainViewModel::LastLogMessagesChanged);
    const QDateTime before = QDateTime::currentDateTime();
    log(static_cast<QtMsgType>(type), message.toUtf8().constData());
    const QDateTime after = QDateTime::currentDateTime();

    QCOMPARE(list()->rowCount(), row + 1);
    const QModelIndex index = list()->index(row);
    QCOMPARE(index.data(2).toInt(), level);
    QCOMPARE(index.data(3).toString(), message);
    const QDateTime time = QDateTime::fromString(index.data(1).toString(), Qt::ISODateWithMs);
    QVERIFY(time >= before && time <= after);
    QCOMPARE(main()->LastLogMessages(), QLatin1Char('[') + levelText + QLatin1String("] ") +
                                            index.data(1).toString() + QLatin1String(" - ") + message +
                                            QLatin1Char('\n'));
    QCOMPARE(line.count(), 1);
}

void tst_MessageHandler::noiseIsDropped_data()
{
    QTest::addColumn<QString>("message");
    QTest::newRow("chart") << "Ignored NaN value";
    QTest::newRow("clipboard") << "QXcbClipboard: Unable to obtain clipboard now";
    QTest::newRow("axis") << "x: Logarithms of zero are undefined";
}

void tst_MessageHandler::noiseIsDropped()
{
    QFETCH(QString, message);
    const int row = list()->rowCount();
    const QString file = logFile();
    const QString line = main()->LastLogMessages();
    qWarning("%s", qPrintable(message));
    QCOMPARE(list()->rowCount(), row);
    QCOMPARE(logFile(), file);
    QCOMPARE(main()->LastLogMessages(), line);
}

void tst_MessageHandler::noiseWordsOutsideWarningsStay()
{
    const int row = list()->rowCount();
    qInfo("Ignored NaN");
    qCritical("obtain clipboard");
    qWarning("ignored nan");
    QCOMPARE(texts(row), QStringList() << QStringLiteral("Ignored NaN") << QStringLiteral("obtain clipboard")
                                       << QStringLiteral("ignored nan"));
}

void tst_MessageHandler::previousHandlerGetsAll()
{
    // The test framework's handler was there before; it fails the test for a message that does not come.
    QTest::ignoreMessage(QtInfoMsg, "for everybody");
    QTest::ignoreMessage(QtWarningMsg, "Ignored NaN");
    qInfo("for everybody");
    qWarning("Ignored NaN");
}

void tst_MessageHandler::qmlWarningKeepsItsLevelInTheFile()
{
    log(QtWarningMsg, "qrc:/Main.qml:3: oops");
    QVERIFY(logFile().contains(QRegularExpression(
        QStringLiteral("\\n\\[WARN\\] \\S{23} - qrc:/Main\\.qml:3: oops \\(file\\.cpp:12, f\\(\\)\\)\\n$"))));
    QCOMPARE(list()->index(list()->rowCount() - 1).data(2).toInt(), int(CLogMessage::DEBUG));
}

void tst_MessageHandler::minLevelHoldsBackTheLine()
{
    main()->LogMessageProxy()->SetMinLevel(CLogMessage::WARNING);
    const int row = list()->rowCount();
    log(QtWarningMsg, "shown");
    const QString line = main()->LastLogMessages();
    QVERIFY(line.startsWith(QLatin1String("[WARN] ")));
    log(QtInfoMsg, "not shown");
    log(QtWarningMsg, "not shown either: qrc:");
    QCOMPARE(main()->LastLogMessages(), line);
    QCOMPARE(list()->rowCount(), row + 3);
    log(QtCriticalMsg, "shown too");
    QVERIFY(main()->LastLogMessages().endsWith(QLatin1String(" - shown too\n")));
}

void tst_MessageHandler::lineIsUpdatedOnChange()
{
    QSignalSpy line(main(), &CMainViewModel::LastLogMessagesChanged);
    log(QtInfoMsg, "first");
    log(QtInfoMsg, "second");
    QCOMPARE(line.count(), 2);
    QCOMPARE(line.at(1).at(0).toString(), main()->LastLogMessages());
}

void tst_MessageHandler::historyIsLimited()
{
    m_application->Settings()->SetLogMaxHistoryCount(0);
    const int rows = list()->rowCount();
    QVERIFY(rows > 3);
    log(QtInfoMsg, "a");
    log(QtInfoMsg, "b");
    QCOMPARE(list()->rowCount(), rows);
    QCOMPARE(text(rows - 1), QStringLiteral("b"));
    QCOMPARE(text(rows - 2), QStringLiteral("a"));
}

void tst_MessageHandler::listenerThatLogs()
{
    QAbstractItemModelTester tester(list(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QAbstractItemModelTester proxyTester(main()->LogMessageProxy(),
                                         QAbstractItemModelTester::FailureReportingMode::QtTest);
    int nested = 0;
    for (const auto signal :
         {&QAbstractItemModel::rowsAboutToBeInserted, &QAbstractItemModel::rowsInserted}) {
        connect(list(), signal, this, [&] {
            ++nested;
            log(QtWarningMsg, "nested");
        });
    }
    const int row = list()->rowCount();
    log(QtInfoMsg, "outer");
    // The listener logs at each entry; what it logs at its own entries is in the file only.
    QCOMPARE(texts(row), QStringList() << QStringLiteral("outer") << QStringLiteral("nested")
                                       << QStringLiteral("nested"));
    QCOMPARE(logFile().count(QLatin1String(" - nested (")), nested);
    QVERIFY(main()->LastLogMessages().endsWith(QLatin1String(" - nested\n")));
    list()->disconnect(this);
    log(QtInfoMsg, "after");
    QCOMPARE(text(list()->rowCount() - 1), QStringLiteral("after"));
    QCOMPARE(list()->rowCount(), row + 4);
}

void tst_MessageHandler::listenerOfTheLineThatLogs()
{
    connect(main(), &CMainViewModel::LastLogMessagesChanged, this, [this](const QString& value) {
        log(QtInfoMsg, value.contains(QLatin1String("outer")) ? "i" : "j");
    });
    const int row = list()->rowCount();
    log(QtInfoMsg, "outer");
    main()->disconnect(this);
    QCOMPARE(texts(row), QStringList() << QStringLiteral("outer") << QStringLiteral("i"));
}

void tst_MessageHandler::listenerThatLogsThroughQt()
{
    connect(list(), &QAbstractItemModel::rowsInserted, this, [] { qWarning("from a listener"); });
    const int row = list()->rowCount();
    qInfo("outer");
    list()->disconnect(this);
    // Qt keeps a message of a thread that is in the handler already from the handler: it goes to the default
    // output, and neither to the list nor to the file.
    QCOMPARE(texts(row), QStringList{QStringLiteral("outer")});
    QCoreApplication::processEvents();
    QCOMPARE(list()->rowCount(), row + 1);
    QVERIFY(!logFile().contains(QLatin1String("from a listener")));
}

void tst_MessageHandler::messagesOfOtherThreads()
{
    constexpr int kThreads = 4;
    constexpr int kMessages = 250;
    int onOtherThreads = 0;
    const auto checkThread = [&] { onOtherThreads += QThread::currentThread() == thread() ? 0 : 1; };
    const QObject listeners;
    connect(list(), &QAbstractItemModel::rowsInserted, &listeners, checkThread, Qt::DirectConnection);
    connect(main(), &CMainViewModel::LastLogMessagesChanged, &listeners, checkThread, Qt::DirectConnection);
    const int row = list()->rowCount();

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < kMessages; ++i)
                log(QtWarningMsg, qPrintable(QStringLiteral("thread %1 message %2.").arg(t).arg(i)));
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    // In the file at once, in the list when the main thread gets to it.
    QCOMPARE(logFile().count(QLatin1String(" - thread ")), kThreads * kMessages);
    QCOMPARE(list()->rowCount(), row);
    QTRY_COMPARE(list()->rowCount(), row + kThreads * kMessages);
    QCOMPARE(onOtherThreads, 0);
    const QStringList all = texts(row);
    for (int t = 0; t < kThreads; ++t) {
        const QStringList ofThread = all.filter(QStringLiteral("thread %1 ").arg(t));
        QCOMPARE(ofThread.size(), kMessages);
        for (int i = 0; i < kMessages; ++i)
            QVERIFY(ofThread.at(i).endsWith(QStringLiteral(" message %1.").arg(i)));
    }
}

void tst_MessageHandler::otherThreadsWhileTheApplicationEnds()
{
    std::atomic<bool> isToEnd{false};
    std::atomic<int> written{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&] {
            while (!isToEnd && written < 1500) {
                qDebug("from another thread");
                ++written;
            }
        });
    }
    for (int run = 0; run < 3; ++run) {
        QTRY_VERIFY(written > (run + 1) * 20);
        m_application->onAboutToQuit();
        deleteDeferred();
        QVERIFY(!m_application);
        m_application = CApplication::Instance();
        m_application->Initialize();
    }
    isToEnd = true;
    for (std::thread& thread : threads)
        thread.join();
}

void tst_MessageHandler::waitingMessagesEndWithTheApplication()
{
    QSignalSpy inserted(list(), &QAbstractItemModel::rowsInserted);
    std::thread([this] { log(QtWarningMsg, "on its way"); }).join();
    m_application->onAboutToQuit();
    inserted.clear();
    QCoreApplication::processEvents();
    QCOMPARE(inserted.count(), 0);
    deleteDeferred();
    QVERIFY(!m_application);
    QCoreApplication::processEvents();
}

QTEST_MAIN(tst_MessageHandler)
#include "tst_MessageHandler.moc"
