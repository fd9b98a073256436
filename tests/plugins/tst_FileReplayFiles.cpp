// SPDX-License-Identifier: GPL-3.0-or-later
// Which files of a folder are listed as recordings, and what is read from them.
#include "CpuTimer.h"
#include "FileReplayFixture.h"
#include "PatientWait.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTimer>
#include <QtTest>

class tst_FileReplayFiles : public QObject, private FileReplayFixture
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void formats_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("unit");
        QTest::addColumn<double>("rate");
        // Both files of a row hold (1.5, -2.25, 0.5) and then (2.5, -3.25, 1.5) in their unit.
        QTest::newRow("comma, seconds, uT")
            << QByteArray("t_s,bx_uT,by_uT,bz_uT\n0.00,1.5,-2.25,0.5\n0.01,2.5,-3.25,1.5\n")
            << int(CUnits::MICRO_TESLA) << 100.0;
        QTest::newRow("semicolon, decimal comma, microseconds, mT")
            << QByteArray("time (us);Bx (mT);By (mT);Bz (mT)\r\n0;1,5;-2,25;0,5\r\n2000;2,5;-3,25;1,5\r\n")
            << int(CUnits::MILLI_TESLA) << 500.0;
        QTest::newRow("tab, decimal comma, nT")
            << QByteArray("Time [s]\tX [nT]\tY [nT]\tZ [nT]\n0,0\t1,5\t-2,25\t0,5\n0,5\t2,5\t-3,25\t1,5\n")
            << int(CUnits::NANO_TESLA) << 2.0;
        QTest::newRow("comments, ISO 8601, T")
            << QByteArray("# made by hand\n#\ntimestamp,Bx_T,By_T,Bz_T\n# more\n"
                          "2020-01-05T23:59:59.9Z,1.5,-2.25,0.5\n# between\n"
                          "2020-01-06T00:00:00.0Z,2.5,-3.25,1.5\n")
            << int(CUnits::TESLA) << 10.0;
        QTest::newRow("gauss, other order, quoted, magnitude")
            << QByteArray("\"Bz (G)\",\"time\",\"|B| (G)\",\"Bx (G)\",\"By (G)\"\n"
                          "0.5,10,9,1.5,-2.25\n1.5,11,9,2.5,-3.25\n")
            << int(CUnits::GAUSS) << 1.0;
        QTest::newRow("micro sign, byte order mark, blank for T")
            << QByteArray("\xEF\xBB\xBFtime_utc;Bx_\xC2\xB5T;By_\xC2\xB5T;Bz_\xC2\xB5T\n"
                          "2020-01-05 00:00:00;1.5;-2.25;0.5\n2020-01-05 00:00:01;2.5;-3.25;1.5\n")
            << int(CUnits::MICRO_TESLA) << 1.0;
        QTest::newRow("micro sign in Latin-1")
            << QByteArray("t_s;Bx_\xB5T;By_\xB5T;Bz_\xB5T\n0;1.5;-2.25;0.5\n1;2.5;-3.25;1.5\n")
            << int(CUnits::MICRO_TESLA) << 1.0;
        QTest::newRow("headings in a comment")
            << QByteArray("#t_s;Bx_mT;By_mT;Bz_mT\n0;1.5;-2.25;0.5\n0.25;2.5;-3.25;1.5\n")
            << int(CUnits::MILLI_TESLA) << 4.0;
        QTest::newRow("units mixed") << QByteArray(
                                            "t_s,Bx_uT,By_nT,Bz_mT\n0,1.5,-2250,0.0005\n1,2.5,-3250,0.0015\n")
                                     << int(CUnits::MICRO_TESLA) << 1.0;
        QTest::newRow("garbage between rows")
            << QByteArray("t_s,Bx_uT,By_uT,Bz_uT\n0,1.5,-2.25,0.5\n\n,,,\nfoo\n1,2\n0.5,a,b,c\n"
                          "x,1,1,1\n1,2.5,-3.25,1.5,more,columns\n")
            << int(CUnits::MICRO_TESLA) << 2.0; // the row of letters has a time
        QTest::newRow("missing values")
            << QByteArray("t_s,Bx_nT,By_nT,Bz_nT\n0,1.5,-2.25,0.5\n1,99999.00,1,1\n2,1,99999.99,1\n"
                          "3,1,1,88888.00\n4,nan,1,1\n5,,1,1\n6,inf,1,1\n7,2.5,-3.25,1.5\n")
            << int(CUnits::NANO_TESLA) << 1.0;
        QTest::newRow("IAGA-2002")
            << iagaText("XYZF", "2022-08-10 00:00:00.000 222         1.50     -2.25      0.50  99999.00\n"
                                "2022-08-10 00:00:01.000 222     99999.00     -2.25      0.50  99999.00\n"
                                "2022-08-10 00:00:02.000 222         2.50     -3.25      1.50  88888.00\n")
            << int(CUnits::NANO_TESLA) << 1.0;
        QTest::newRow("own record, version 1.1")
            << recordText("1.1", "2024.03.01T10:11:12.000000000;2.75;7;1.5;-2.25;0.5;3\n"
                                 "2024.03.01T10:11:12.250000000;4.4;7;2.5;-3.25;1.5;3")
            << int(CUnits::MILLI_TESLA) << 4.0;
    }
    void formats()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, unit);
        QFETCH(double, rate);
        write(QStringLiteral("file.txt"), text);
        start();
        QCOMPARE(serialNumbers(), QStringList{QStringLiteral("file.txt")});
        const auto instrument = m_driver->Instruments().first();
        QVERIFY(instrument->Connect());
        QCOMPARE(int(instrument->UnitList().first()), unit);
        QVERIFY(isClose(instrument->AcquisitionRateBound()->Default(), rate));
        QCOMPARE(instrument->AcquisitionRateBound()->Min(), instrument->AcquisitionRateBound()->Max());
        Session session(instrument);
        session.parameters.SetUnits(static_cast<CUnits::UnitType>(unit));
        session.Configure(CTrigger::CONTINUOUS, rate, 1000, rate / 1000);
        play(session);
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 2);
        QVERIFY(isClose(value(samples.at(0)->Bx()), 1.5) && isClose(value(samples.at(0)->By()), -2.25) &&
                isClose(value(samples.at(0)->Bz()), 0.5));
        QVERIFY(isClose(value(samples.at(1)->Bx()), 2.5) && isClose(value(samples.at(1)->By()), -3.25) &&
                isClose(value(samples.at(1)->Bz()), 1.5));
    }

    void noRecordings_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("headings only") << QByteArray("t_s,bx_uT,by_uT,bz_uT\n");
        QTest::newRow("binary") << QByteArrayLiteral("\x7f\0\1\2t_s,bx_uT,by_uT,bz_uT\n0,1,2,3\n1,1,2,3\n");
        QTest::newRow("prose") << QByteArray("This is a licence.\nIt has lines, and commas.\n");
        QTest::newRow("no time") << QByteArray("x,y,z,Bx_T,By_T,Bz_T\n1,2,3,4,5,6\n");
        QTest::newRow("no units") << QByteArray("t_s,Bx,By,Bz\n1,2,3,4\n");
        QTest::newRow("two components") << QByteArray("t_s,Bx_uT,By_uT\n1,2,3\n");
        QTest::newRow("time of day without padding") << QByteArray(
            "Bx (T)\tBy (T)\tBz (T)\tDate (DDMMYYY)\tTime (24-HH:MM:SS)\n1\t2\t3\t20032018\t92924\n");
        QTest::newRow("angles") << iagaText("DIFX", "2022-08-10 00:00:00.000 222 1 2 3 4\n");
        QTest::newRow("other XML") << QByteArray("<?xml version=\"1.0\"?><a ver=\"1.0\"><flux>1</flux></a>");
        QTest::newRow("record without samples") << recordText("1.2", "");
        QTest::newRow("cut record") << recordText("1.2", "").left(60);
        QTest::newRow("one long line") << QByteArray(3000000, 'x');
    }
    void noRecordings()
    {
        QFETCH(QByteArray, text);
        write(QStringLiteral("file.csv"), text);
        start();
        QCOMPARE(m_driver->Instruments().size(), 0);
    }

    void hostileRecordsAreRefusedAtOnce_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray root = "<NorvaneXmlRecord ver=\"1.0\">";
        QByteArray defaults = "<!DOCTYPE NorvaneXmlRecord [<!ATTLIST a ";
        QByteArray attributes = root + "<a ";
        for (int i = 0; i < 2000; ++i)
            defaults += 'b' + QByteArray::number(i) + " CDATA \"x\" ";
        QTest::newRow("default attributes") << defaults + ">]>" + root + QByteArray("<a/>").repeated(300000);
        QTest::newRow("default attributes, record")
            << defaults + ">]>" + recordText("1.2", "2024.03.01T10:11:12.000000000;1;1;1;1;1;1;1");
        QTest::newRow("many elements") << root + QByteArray("<a/>").repeated(300000);
        QTest::newRow("nested, 60 MB") << root + QByteArray("<a>\n").repeated(15000000);
        for (int i = 0; i < 100000; ++i)
            attributes += 'b' + QByteArray::number(i) + "='' ";
        QTest::newRow("attributes") << attributes + "/>";
        QTest::newRow("tag without an end") << root + '<' + QByteArray(5000000, 'a');
        QTest::newRow("comment without an end") << root + "<!--" + QByteArray(5000000, 'a');
        QTest::newRow("text without rows") << root + "<flux>" + QByteArray(60000000, ';');
    }
    void hostileRecordsAreRefusedAtOnce()
    {
        QFETCH(QByteArray, text);
        write(QStringLiteral("file.xml"), text);
        const CpuTimer timer;
        start();
        QVERIFY2(timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(m_driver->Instruments().size(), 0);
    }

    // The head alone is read for the list, though the only block goes on far behind it.
    void recordOfOneLargeBlock()
    {
        QByteArray rows;
        const int count = 40000;
        for (int i = 0; i < count; ++i)
            rows += "2024.03.01T10:" + QByteArray::number(10 + i / 2400) + ':' +
                    QByteArray::number(10 + i / 48 % 50) + '.' + QByteArray::number(100000000 + i % 48) +
                    ";2.75;7;1.5;-2.25;0.5;3;0.5\n";
        write(QStringLiteral("file.qdr.xml"), recordText("1.2", rows));
        QVERIFY(rows.size() > 2000000);
        start();
        QCOMPARE(m_driver->Instruments().size(), 1);
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 4, 1000, 0.004);
        play(session);
        QCOMPARE(session.Samples().size(), count);
    }

    // A file from the future is not one that is being written.
    void fileFromTheFutureIsNotReadForEver()
    {
        write(QStringLiteral("file.txt"), "no recording\n");
        QFile file(m_folder->filePath(QStringLiteral("file.txt")));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(2), QFileDevice::FileModificationTime));
        file.close();
        start();
        class TimerCount : public QObject
        {
        public:
            int count = 0;
            bool eventFilter(QObject* object, QEvent* event) override
            {
                if (event->type() == QEvent::Timer && qobject_cast<QTimer*>(object))
                    ++count;
                return false;
            }
        } timers;
        qApp->installEventFilter(&timers);
        // The folder is looked at again 200 ms after a change, and then not any more.
        const auto isQuiet = [&timers] {
            timers.count = 0;
            QTest::qWait(450);
            return timers.count == 0;
        };
        QVERIFY(QTest::qWaitFor(isQuiet, kLongWaitMs));
    }

    void serialNumbersAreDistinct()
    {
        const QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,1,2,3\n";
        for (const char* name : {"a_b.csv", "a/b.csv", "c - d.csv", "c-d.csv", "a/c-d.csv", "b/b.csv"})
            write(QLatin1String(name), text);
        start();
        QStringList numbers = serialNumbers();
        QCOMPARE(numbers.size(), 6);
        QVERIFY(numbers.contains(QStringLiteral("a_b.csv")) && numbers.contains(QStringLiteral("b.csv (a)")));
        for (const QString& number : qAsConst(numbers))
            QVERIFY(!number.contains(QLatin1Char('/')) && !number.contains(QLatin1String(" - ")));
        QCOMPARE(numbers.removeDuplicates(), 0);
    }

    // Where the application proposes to save, and in the folders there, without a settings file.
    void documentsByDefault()
    {
        const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        QVERIFY(QDir().mkpath(documents + QStringLiteral("/Kestrix")));
        const QByteArray text = recordText("1.2", "2024.03.01T10:11:12.000000000;1;1;1;1;1;1;1");
        const QStringList paths{documents + QStringLiteral("/x_measurement.qdr.xml"),
                                documents + QStringLiteral("/Kestrix/y.xml"),
                                documents + QStringLiteral("/x.odt")};
        for (const QString& path : paths) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        }
        removeSettings(kSettings);
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(m_driver->Start(), qPrintable(m_driver->ErrorString()));
        QCOMPARE(serialNumbers(),
                 (QStringList{QStringLiteral("x_measurement.qdr.xml"), QStringLiteral("y.xml (Kestrix)")}));
        for (const QString& path : paths)
            QFile::remove(path);
    }

    void largeFolderIsListedFast()
    {
        for (int i = 0; i < 3000; ++i) {
            write(QStringLiteral("note%1.txt").arg(i), "Not a recording, but a note\nof two lines\n");
            write(QStringLiteral("image%1.png").arg(i), "x");
        }
        const CpuTimer timer;
        start();
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(m_driver->Instruments().size(), 0);
    }

    void folderIsFollowed()
    {
        const QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        write(QStringLiteral("sub/b.csv"), text);
        write(QStringLiteral("sub/deep/c.csv"), text);
        start();
        QCOMPARE(serialNumbers(), (QStringList{QStringLiteral("a.csv"), QStringLiteral("b.csv (sub)")}));
        const auto first = m_driver->Instruments().first();
        QSignalSpy listed(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);

        write(QStringLiteral("c.csv"), text);
        QTRY_COMPARE(listed.size(), 1);
        QCOMPARE(m_driver->Instruments().size(), 3);
        QCOMPARE(m_driver->Instruments().first(), first);
        QVERIFY(QFile::remove(m_folder->filePath(QStringLiteral("sub/b.csv"))));
        QTRY_COMPARE(listed.size(), 2);
        QCOMPARE(serialNumbers(), (QStringList{QStringLiteral("a.csv"), QStringLiteral("c.csv")}));
        QCOMPARE(m_driver->Instruments().first(), first);
        // What is no recording changes nothing.
        write(QStringLiteral("notes.txt"), "nothing\n");
        QTest::qWait(500);
        QCOMPARE(listed.size(), 2);
    }

    void folderThatDoesNotExist()
    {
        const QString path = m_folder->filePath(QStringLiteral("later"));
        writeSettings(kSettings, "[Replay]\nFolder=" + path.toUtf8() + '\n');
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY(m_driver->Start());
        QCOMPARE(m_driver->Instruments().size(), 0);
        QSignalSpy listed(m_driver->Provider(), &CInstrumentListProvider::InstrumentListUpdated);
        write(QStringLiteral("later/a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,1,2,3\n");
        QTRY_COMPARE(m_driver->Instruments().size(), 1);
        QVERIFY(!listed.isEmpty());
    }

    void fileThatIsGoneFailsToConnect()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,1,2,3\n");
        start();
        const auto instrument = m_driver->Instruments().first();
        QVERIFY(QFile::remove(m_folder->filePath(QStringLiteral("a.csv"))));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
        QVERIFY(!instrument->Connect());
        QVERIFY(!instrument->IsConnected());
    }
};

QTEST_GUILESS_MAIN(tst_FileReplayFiles)
#include "tst_FileReplayFiles.moc"
