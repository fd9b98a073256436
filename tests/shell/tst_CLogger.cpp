// SPDX-License-Identifier: GPL-3.0-or-later
#include "CLogger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <thread>
#include <vector>

class tst_CLogger : public QObject
{
    Q_OBJECT

private slots:
    void makesItsFolderWithParents();
    void linesOfEveryType_data();
    void linesOfEveryType();
    void contextWithoutPlaceGivesEmptyTexts();
    void placeMarkersInTheMessageStay();
    void isOnTheDeviceAfterEachLine();
    void keepsNothingOfThePreviousRun();
    void keepsTextBeyondLatin1();
    void losesLinesQuietlyWithoutFile();
    void linesOfManyThreadsStayWhole();

private:
    static inline int warnings = 0;

    static QStringList lines(const QString& folder)
    {
        QFile file(folder + QStringLiteral("/Kestrix.log"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    }
};

void tst_CLogger::makesItsFolderWithParents()
{
    const QTemporaryDir home;
    const QString folder = home.filePath(QStringLiteral("share/one/Kestrix"));
    CLogger logger(folder);
    logger.Write(QtInfoMsg, QMessageLogContext("a.cpp", 1, "f()", "default"), QStringLiteral("first"));

    const QStringList all = lines(folder);
    QCOMPARE(all.size(), 2);
    QVERIFY(all.at(0).contains(QLatin1String(" - first (a.cpp:1, f())")));
}

void tst_CLogger::linesOfEveryType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("debug") << int(QtDebugMsg) << "DEBUG";
    QTest::newRow("info") << int(QtInfoMsg) << "INFO";
    QTest::newRow("warning") << int(QtWarningMsg) << "WARN";
    QTest::newRow("critical") << int(QtCriticalMsg) << "CRIT";
    QTest::newRow("fatal") << int(QtFatalMsg) << "FATAL";
    QTest::newRow("none of the five") << 17 << "DEBUG";
}

void tst_CLogger::linesOfEveryType()
{
    QFETCH(int, type);
    QFETCH(QString, text);

    const QTemporaryDir folder;
    CLogger logger(folder.path());
    const QDateTime before = QDateTime::currentDateTime();
    // A QML warning keeps its level in the file.
    logger.Write(static_cast<QtMsgType>(type), QMessageLogContext("dir/file.cpp", 42, "void f(int)", "c"),
                 QStringLiteral("qrc:/Main.qml:3: oops"));
    const QDateTime after = QDateTime::currentDateTime();

    const QStringList all = lines(folder.path());
    QCOMPARE(all.size(), 2);
    const QRegularExpression form(QStringLiteral("^\\[(\\w+)\\] (\\S+) - (.*) \\((.*):(\\d+), (.*)\\)$"));
    const QRegularExpressionMatch match = form.match(all.at(0));
    QVERIFY2(match.hasMatch(), qPrintable(all.at(0)));
    QCOMPARE(match.captured(1), text);
    QCOMPARE(match.captured(2).size(), int(qstrlen("2026-01-31T23:59:59.999")));
    const QDateTime time = QDateTime::fromString(match.captured(2), Qt::ISODateWithMs);
    QVERIFY(time >= before);
    QVERIFY(time <= after);
    QCOMPARE(match.captured(3), QStringLiteral("qrc:/Main.qml:3: oops"));
    QCOMPARE(match.captured(4), QStringLiteral("dir/file.cpp"));
    QCOMPARE(match.captured(5), QStringLiteral("42"));
    QCOMPARE(match.captured(6), QStringLiteral("void f(int)"));
}

void tst_CLogger::contextWithoutPlaceGivesEmptyTexts()
{
    const QTemporaryDir folder;
    CLogger logger(folder.path());
    logger.Write(QtWarningMsg, QMessageLogContext(), QStringLiteral("text"));
    QVERIFY(lines(folder.path()).at(0).endsWith(QLatin1String(" - text (:0, )")));
}

void tst_CLogger::placeMarkersInTheMessageStay()
{
    const QTemporaryDir folder;
    CLogger logger(folder.path());
    logger.Write(QtInfoMsg, QMessageLogContext("a.cpp", 7, "f%3()", "c"), QStringLiteral("%4 of %1, %99"));
    QVERIFY(lines(folder.path()).at(0).endsWith(QLatin1String(" - %4 of %1, %99 (a.cpp:7, f%3())")));
}

void tst_CLogger::isOnTheDeviceAfterEachLine()
{
    const QTemporaryDir folder;
    CLogger logger(folder.path());
    for (int i = 1; i <= 5; ++i) {
        logger.Write(QtDebugMsg, QMessageLogContext(), QString::number(i));
        QCOMPARE(lines(folder.path()).size(), i + 1);
    }
}

void tst_CLogger::keepsNothingOfThePreviousRun()
{
    const QTemporaryDir folder;
    {
        CLogger logger(folder.path());
        logger.Write(QtDebugMsg, QMessageLogContext(), QStringLiteral("old"));
        QCOMPARE(lines(folder.path()).size(), 2);
    }
    const CLogger logger(folder.path());
    QCOMPARE(lines(folder.path()), QStringList{QString()});
}

void tst_CLogger::keepsTextBeyondLatin1()
{
    const QTemporaryDir folder;
    CLogger logger(folder.path());
    const QString text = QString::fromUtf8("ε(B) 48.8 µT ✓");
    logger.Write(QtDebugMsg, QMessageLogContext(), text);
    QVERIFY(lines(folder.path()).at(0).contains(text));
}

void tst_CLogger::losesLinesQuietlyWithoutFile()
{
    const QTemporaryDir home;
    const QString blocked = home.filePath(QStringLiteral("file"));
    QFile file(blocked);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();

    warnings = 0;
    const QtMessageHandler previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
    CLogger logger(blocked + QStringLiteral("/Kestrix"));
    logger.Write(QtCriticalMsg, QMessageLogContext(), QStringLiteral("lost"));
    qInstallMessageHandler(previous);
    QCOMPARE(warnings, 0);
    QVERIFY(!QFile::exists(blocked + QStringLiteral("/Kestrix/Kestrix.log")));
}

void tst_CLogger::linesOfManyThreadsStayWhole()
{
    constexpr int kThreads = 8;
    constexpr int kLines = 500;
    const QTemporaryDir folder;
    CLogger logger(folder.path());

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&logger, t] {
            for (int i = 0; i < kLines; ++i)
                logger.Write(QtInfoMsg, QMessageLogContext("t.cpp", t, "run()", "c"),
                             QStringLiteral("thread %1 line %2").arg(t).arg(i));
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    QStringList all = lines(folder.path());
    QCOMPARE(all.takeLast(), QString());
    QCOMPARE(all.size(), kThreads * kLines);
    const QRegularExpression form(
        QStringLiteral("^\\[INFO\\] \\S{23} - thread (\\d) line (\\d+) \\(t\\.cpp:(\\d), run\\(\\)\\)$"));
    std::vector<int> next(kThreads, 0);
    for (const QString& line : qAsConst(all)) {
        const QRegularExpressionMatch match = form.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        const int thread = match.captured(1).toInt();
        QCOMPARE(match.captured(3).toInt(), thread);
        QCOMPARE(match.captured(2).toInt(), next[static_cast<std::size_t>(thread)]++);
    }
}

QTEST_GUILESS_MAIN(tst_CLogger)
#include "tst_CLogger.moc"
