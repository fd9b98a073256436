// SPDX-License-Identifier: GPL-3.0-or-later
#include "PluginDriver.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

const QString kSettings = QStringLiteral("KestrixFileReplay.ini");

double value(tFlux flux)
{
    return static_cast<double>(flux);
}

bool isClose(double a, double b)
{
    return std::abs(a - b) <= 1e-6 * std::abs(b);
}

QByteArray iagaText(const QByteArray& axes, const QByteArray& rows)
{
    return " Format                 IAGA-2002                                    |\n"
           " Geodetic Latitude      310086.6051                                  |\n"
           " # a comment                                                         |\n"
           "DATE       TIME         DOY     WIC" +
           axes.mid(0, 1) + "      WIC" + axes.mid(1, 1) + "      WIC" + axes.mid(2, 1) + "      WIC" +
           axes.mid(3, 1) + "   |\n" + rows;
}

QByteArray recordText(const QByteArray& version, const QByteArray& rows)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<NorvaneXmlRecord ver=\"1.0\">\n"
           "<header><src>Kestrix v1.2.4</src></header>\n"
           "<body type=\"tQDR_BODY_KESTRIX\" ver=\"1.1\"><comment></comment><instrument>x</instrument>\n"
           "<dataset type=\"tQDR_DATASET_KESTRIX_MEASUREMENT\" ver=\"" +
           version +
           "\"><headings colsep=\";\">Timestamp</headings>\n"
           "<parameters>Units=mT Range=0 AutoRange=1 TriggerMode=Continuous AcqRate=4 DispRate=2 Avg=1 "
           "FreqMin=0 FreqMax=2 Bins=1 BlockSize=2</parameters>\n"
           "<measurements><comment></comment><flux>" +
           rows + "</flux></measurements></dataset></body></NorvaneXmlRecord>\n";
}

} // namespace

class tst_FileReplayInstrument : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PluginDriver> m_driver;

    void write(const QString& name, const QByteArray& text) const
    {
        const QString path = m_folder->filePath(name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

    void start(const QByteArray& keys = "Speed=0\n")
    {
        writeSettings(kSettings, "[Replay]\nFolder=" + m_folder->path().toUtf8() + '\n' + keys);
        m_driver = std::make_unique<PluginDriver>(QStringLiteral(PLUGIN_PATH));
        QVERIFY2(m_driver->Start(), qPrintable(m_driver->ErrorString()));
    }

    QStringList serialNumbers() const
    {
        QStringList numbers;
        const auto instruments = m_driver->Instruments();
        for (const auto& instrument : instruments)
            numbers.append(instrument->SerialNumber());
        return numbers;
    }

    // Plays a file to its end.
    void play(Session& session) const
    {
        session.blocks.clear();
        session.instrument->StartMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(!session.instrument->IsRunning(), 20000);
    }

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void cleanup()
    {
        m_driver.reset();
        removeSettings(kSettings);
    }

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
        QElapsedTimer timer;
        timer.start();
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
        // The folder is looked at again 200 ms after a change.
        QTest::qWait(300);
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
        QTest::qWait(450);
        QCOMPARE(timers.count, 0);
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
        QElapsedTimer timer;
        timer.start();
        start();
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(m_driver->Instruments().size(), 0);
    }

    void timesOfTheFile()
    {
        write(QStringLiteral("utc.csv"), "time_utc,Bx_nT,By_nT,Bz_nT\n2020-01-05T23:59:59.123456789,1,2,3\n"
                                         "2020-01-06T00:00:00.123456789,1,2,3\n");
        write(QStringLiteral("offset.csv"), "time,Bx_nT,By_nT,Bz_nT\n2020-01-06T01:29:59.5+01:30,1,2,3\n"
                                            "2020-01-06T01:30:00.5+01:30,1,2,3\n");
        write(QStringLiteral("epoch.csv"), "t_us,Bx_nT,By_nT,Bz_nT\n1578268799123456.789,1,2,3\n"
                                           "1578268800123456.789,1,2,3\n");
        write(QStringLiteral("local.csv"), "time,Bx_nT,By_nT,Bz_nT\n2020-01-05T23:59:59,1,2,3\n"
                                           "2020-01-06T00:00:00,1,2,3\n");
        start();
        const auto first = [this](const char* name) {
            Session session(m_driver->Instrument(QLatin1String(name)));
            session.instrument->Connect();
            session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
            play(session);
            return session.Samples().isEmpty() ? 0 : epochNs(*session.Samples().first());
        };
        const qint64 seconds = 1578268799LL * 1000000000; // 2020-01-05 23:59:59 UTC
        QCOMPARE(first("utc.csv"), seconds + 123456789);
        QCOMPARE(first("offset.csv"), seconds + 500000000);
        QCOMPARE(first("epoch.csv"), seconds + 123456789);
        QCOMPARE(first("local.csv"),
                 QDateTime(QDate(2020, 1, 5), QTime(23, 59, 59)).toSecsSinceEpoch() * 1000000000);
    }

    void relativeTimesBeginNow()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n100,1,2,3\n100.5,1,2,3\n102,1,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 2, 2, 1);
        play(session);
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 3);
        QVERIFY(std::abs(samples.first()->Timestamp.msecsTo(QDateTime::currentDateTime())) < 10000);
        QCOMPARE(epochNs(*samples.at(1)) - epochNs(*samples.at(0)), 500000000LL);
        QCOMPARE(epochNs(*samples.at(2)) - epochNs(*samples.at(0)), 2000000000LL);
    }

    void derivedValues()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT,F_nT\n0,3.00,4.00,12.00,99999.00\n1,0,0,2,7\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1, 1, 1);
        play(session);
        const auto samples = session.Samples();
        QVERIFY(isClose(value(samples.at(0)->B()), 13)); // missing in the file: the norm
        QVERIFY(isClose(value(samples.at(1)->B()), 7));  // as the file has it
        QVERIFY(isClose(value(samples.at(0)->BBprime()), 13));
        QVERIFY(isClose(value(samples.at(0)->dB()), 0.005)); // half of the last digit
        QVERIFY(isClose(session.blocks.at(0)->Bprime.Z(), 12.0 / 13));
        session.parameters.SetUnits(CUnits::MICRO_TESLA);
        play(session);
        QVERIFY(isClose(value(session.Samples().at(0)->Bz()), 0.012));
    }

    void recordKeepsItsFields()
    {
        write(QStringLiteral("a.qdr.xml"),
              recordText("1.2", "2024.03.01T10:11:12.123456789;2.75;7.5;1.5;-2.25;0.5;3;0.125\n"
                                "2024.03.01T10:11:12.373456789;4.4;8.5;2.5;-3.25;1.5;4;nan\n"));
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::MILLI_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 4, 10, 0.4);
        play(session);
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 2);
        QCOMPARE(samples.at(0)->Timestamp.toString(QStringLiteral("yyyy.MM.ddTHH:mm:ss.zzz")),
                 QStringLiteral("2024.03.01T10:11:12.123"));
        QCOMPARE(samples.at(0)->TimestampNanoseconds, 123456789U);
        QCOMPARE(samples.at(0)->B(), 2.75F);
        QCOMPARE(samples.at(0)->BBprime(), 7.5F);
        QCOMPARE(int(samples.at(0)->Temperature()), 3);
        QCOMPARE(samples.at(0)->dB(), 0.125F);
        QVERIFY(std::isnan(samples.at(1)->dB()));
        QCOMPARE(session.blocks.first()->Bprime.Z(), 0.0);
    }

    void ownRateRules()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n0.2,1,2,3\n0.4,1,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        // What the application starts from.
        session.Configure(CTrigger::CONTINUOUS, 20, 2, 10);
        QTRY_COMPARE(session.parameters.AcquisitionRate(), 5.0);
        QCOMPARE(session.parameters.DisplayRate(), 5.0);
        QCOMPARE(session.parameters.BlockSize(), 1);
        QVERIFY(session.parameters.ApplyConfiguration());
        session.parameters.SetDisplayRate(1);
        QCOMPARE(session.parameters.BlockSize(), 5);
        const CBoundedParm* bound = session.instrument->KestrixAcquisitionRateBound();
        QVERIFY(bound->Min() <= 5.0 && 5.0 <= bound->Max());
    }

    void pacing()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 40; ++i)
            text += QByteArray::number(i * 0.01) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        // 40 samples at 100 Hz are 0.4 s; ten times as fast 40 ms.
        for (const double speed : {1.0, 10.0}) {
            start("Speed=" + QByteArray::number(speed) + '\n');
            Session session(m_driver->Instruments().first());
            QVERIFY(session.instrument->Connect());
            session.Configure(CTrigger::CONTINUOUS, 100, 10, 10);
            QElapsedTimer timer;
            timer.start();
            play(session);
            QVERIFY(timer.elapsed() >= 395 / speed);
            QCOMPARE(session.blocks.size(), 4);
            QCOMPARE(session.instrument->StatusString().isEmpty(), false);
            // Speed does not touch the times.
            const auto samples = session.Samples();
            QCOMPARE(epochNs(*samples.at(39)) - epochNs(*samples.at(0)), 390000000LL);
        }
    }

    void loopGoesOnInTime()
    {
        write(QStringLiteral("a.csv"), "time_utc,Bx_nT,By_nT,Bz_nT\n2020-01-01T00:00:00,1,2,3\n"
                                       "2020-01-01T00:00:01,1,2,3\n2020-01-01T00:00:02,1,2,3\n");
        start("Speed=0\nLoop=true\n");
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1, 2, 0.5);
        session.instrument->StartMeasurement();
        QTRY_VERIFY(session.blocks.size() >= 20);
        session.instrument->StopMeasurement();
        const auto samples = session.Samples();
        for (int i = 1; i < 40; ++i)
            QCOMPARE(epochNs(*samples.at(i)) - epochNs(*samples.at(i - 1)), 1000000000LL);
    }

    // A main thread that does not keep up holds the reading back.
    void fastReplayDoesNotPileUp()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 1000; ++i)
            text += QByteArray::number(i) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.Configure(CTrigger::CONTINUOUS, 1, 1, 1);
        session.instrument->StartMeasurement();
        QTest::qSleep(200); // no event is processed
        QCoreApplication::sendPostedEvents();
        QVERIFY2(session.blocks.size() <= 100, qPrintable(QString::number(session.blocks.size())));
        QVERIFY(session.blocks.size() > 0);
        QTRY_VERIFY_WITH_TIMEOUT(!session.instrument->IsRunning(), 20000);
        QCOMPARE(session.blocks.size(), 1000);
    }

    void singleBlocksFollowOneAnother()
    {
        write(QStringLiteral("a.csv"),
              "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,2,2,3\n2,3,2,3\n3,4,2,3\n4,5,2,3\n");
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::IMMEDIATE, 1, 2, 1);
        QCOMPARE(session.parameters.ImmediateAcquisitionRate(), 1.0);
        for (int i = 0; i < 3; ++i) {
            session.instrument->StartMeasurement();
            QTRY_VERIFY(!session.instrument->IsRunning());
            QCOMPARE(session.blocks.size(), i + 1);
            QCOMPARE(session.blocks.last()->Results.first()->Bx(), tFlux(2 * i + 1));
        }
        QCOMPARE(session.blocks.last()->Results.size(), 1); // what was left
    }

    void externalTriggerTakesTheNextBlock()
    {
        write(QStringLiteral("a.csv"), "t_s,Bx_nT,By_nT,Bz_nT\n0,1,2,3\n1,2,2,3\n2,3,2,3\n3,4,2,3\n");
        start();
        FakeTrigger trigger;
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetTriggerPlugin(&trigger);
        session.Configure(CTrigger::EXTERNAL, 1, 2, 1);
        session.instrument->StartMeasurement();
        QTest::qWait(30);
        QCOMPARE(session.blocks.size(), 0);
        emit trigger.Trigger();
        QTRY_COMPARE(session.blocks.size(), 1);
        session.instrument->SendTrigger();
        QTRY_COMPARE(session.blocks.size(), 2);
        session.instrument->StopMeasurement();
        session.parameters.SetTriggerPlugin(nullptr);
    }

    // No sample is lost when the size of the blocks changes on the way.
    void changeOfBlockSizeLosesNothing()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 2000; ++i)
            text += QByteArray::number(i) + ',' + QByteArray::number(i) + ",2,3\n";
        write(QStringLiteral("a.csv"), text);
        start();
        Session session(m_driver->Instruments().first());
        QVERIFY(session.instrument->Connect());
        session.parameters.SetUnits(CUnits::NANO_TESLA);
        session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
        connect(session.instrument.data(), &CInstrument::OnNewMeasureBlock, &session, [&session] {
            if (session.blocks.size() == 10)
                session.parameters.SetDisplayRate(0.25);
            if (session.blocks.size() == 40)
                session.parameters.SetDisplayRate(0.05);
        });
        play(session);
        QVector<int> sizes;
        for (const auto& block : qAsConst(session.blocks)) {
            if (!sizes.contains(block->Results.size()))
                sizes.append(block->Results.size());
        }
        QVERIFY(sizes.contains(10) && sizes.contains(4) && sizes.contains(20));
        const auto samples = session.Samples();
        QCOMPARE(samples.size(), 2000);
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(samples.at(i)->Bx(), tFlux(i));
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

    void startAndStopOften()
    {
        QByteArray text = "t_s,Bx_nT,By_nT,Bz_nT\n";
        for (int i = 0; i < 1000; ++i)
            text += QByteArray::number(i) + ",1,2,3\n";
        write(QStringLiteral("a.csv"), text);
        start("Speed=0\nLoop=true\n");
        const int threads = threadCount();
        {
            Session session(m_driver->Instruments().first());
            QVERIFY(session.instrument->Connect());
            session.Configure(CTrigger::CONTINUOUS, 1, 10, 0.1);
            for (int run = 0; run < 100; ++run) {
                session.instrument->StartMeasurement();
                QCoreApplication::processEvents();
                session.instrument->StopMeasurement();
                session.blocks.clear();
                QCoreApplication::processEvents();
                QCOMPARE(session.blocks.size(), 0);
            }
            session.instrument->StartMeasurement();
        }
        m_driver.reset();
        QCOMPARE(threadCount(), threads);
    }
};

QTEST_GUILESS_MAIN(tst_FileReplayInstrument)
#include "tst_FileReplayInstrument.moc"
