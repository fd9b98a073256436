// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMapperPluginOnTheFly.h"
#include "CMapperPluginStopAndGo.h"
#include "PluginDriver.h"
#include "SimulatedBench.h"

#include <QElapsedTimer>
#include <QLibrary>
#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <cmath>

namespace {

const QString kSettings = QStringLiteral("KestrixSimulatedMapper.ini");
const QString kTriggerSettings = QStringLiteral("KestrixSimulatedTrigger.ini");

qint64 nowNs()
{
    return QDateTime::currentMSecsSinceEpoch() * 1000000;
}

/// What the factory of a library makes, of the class that it is known to have.
template <class Plugin, class Base> std::unique_ptr<Plugin> make(const char* path, const char* factory)
{
    QLibrary library(QString::fromUtf8(path));
    const auto function = reinterpret_cast<Base* (*)()>(library.resolve(factory));
    if (!function)
        qFatal("%s: %s", path, qPrintable(library.errorString()));
    return std::unique_ptr<Plugin>(qobject_cast<Plugin*>(function()));
}

QString textOf(const CPosition& position)
{
    return QStringLiteral("%1 %2 %3").arg(position.X()).arg(position.Y()).arg(position.Z());
}

QString textOf(const COrientation& orientation)
{
    return QStringLiteral("%1 %2 %3").arg(orientation.Roll()).arg(orientation.Pitch()).arg(orientation.Yaw());
}

void moveTo(CMapperPluginStopAndGo& mapper, double x, double y, double z, double yaw = 0)
{
    CPosition position;
    COrientation orientation;
    position.SetX(x);
    position.SetY(y);
    position.SetZ(z);
    orientation.SetYaw(yaw);
    mapper.MoveTo(position, orientation);
}

} // namespace

/// The simulated mappers and the simulated trigger, out of their libraries.
class tst_SimulatedMapper : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        writeSettings(kSettings, "[Gantry]\nSpeed=100000\nAngularSpeed=100000\nSettleMs=1\n");
        m_gantry = make<CMapperPluginStopAndGo, CMapperPlugin>(GANTRY_PATH, "CreateMapperPlugin");
        m_mover = make<CMapperPluginOnTheFly, CMapperPlugin>(MOVER_PATH, "CreateMapperPlugin");
        m_trigger = make<CTriggerPlugin, CTriggerPlugin>(TRIGGER_PATH, "CreateTriggerPlugin");
    }

    void cleanup()
    {
        m_gantry.reset();
        m_mover.reset();
        m_trigger.reset();
        removeSettings(kSettings);
        removeSettings(kTriggerSettings);
        QVERIFY(!SimulatedBench::IsProbeMounted());
    }

    void kinds()
    {
        QVERIFY(m_gantry);
        QCOMPARE(m_gantry->MapperType, 2);
        QCOMPARE(m_gantry->Name, QStringLiteral("Simulated gantry"));
        QVERIFY(m_mover);
        QCOMPARE(m_mover->MapperType, 1);
        QCOMPARE(m_mover->Name, QStringLiteral("Simulated mover"));
        QVERIFY(m_trigger);
        QCOMPARE(m_trigger->Name, QStringLiteral("Simulated trigger"));
    }

    void gantryArrives()
    {
        QSignalSpy ready(m_gantry.get(), &CMapperPluginStopAndGo::Ready);
        std::atomic<QThread*> reporter{nullptr};
        connect(
            m_gantry.get(), &CMapperPluginStopAndGo::Ready, m_gantry.get(),
            [&] { reporter = QThread::currentThread(); }, Qt::DirectConnection);
        m_gantry->Start();
        moveTo(*m_gantry, 10, -20.5, 30, 45);
        QTRY_COMPARE(ready.count(), 1);
        QVERIFY(reporter.load() != QThread::currentThread());
        QCOMPARE(textOf(m_gantry->GetPosition()), QStringLiteral("10 -20.5 30"));
        QCOMPARE(textOf(m_gantry->GetOrientation()), QStringLiteral("0 0 45"));
        // It reports at the place where it stands already, too.
        moveTo(*m_gantry, 10, -20.5, 30, 45);
        QTRY_COMPARE(ready.count(), 2);
        m_gantry->Stop();
        QCOMPARE(textOf(m_gantry->GetPosition()), QStringLiteral("10 -20.5 30"));
        m_gantry->Start();
        QCOMPARE(textOf(m_gantry->GetPosition()), QStringLiteral("10 -20.5 30"));
    }

    void gantryHasAFiniteSpeed()
    {
        writeSettings(kSettings, "[Gantry]\nSpeed=100\nAngularSpeed=100\nSettleMs=0\n");
        m_gantry->Start();
        QSignalSpy ready(m_gantry.get(), &CMapperPluginStopAndGo::Ready);
        QElapsedTimer timer;
        timer.start();
        moveTo(*m_gantry, 3, 4, 0);
        QTRY_COMPARE(ready.count(), 1);
        QVERIFY(timer.elapsed() >= 49); // 5 mm
        timer.start();
        moveTo(*m_gantry, 3, 4, 0, 10);
        QTRY_COMPARE(ready.count(), 2);
        QVERIFY(timer.elapsed() >= 99); // 10 degrees
    }

    void gantryPassesThePlacesBetween()
    {
        writeSettings(kSettings, "[Gantry]\nSpeed=20\n");
        m_gantry->Start();
        moveTo(*m_gantry, 300, 0, -300);
        QTRY_VERIFY(m_gantry->GetPosition().X() > 0.5);
        const CPosition position = m_gantry->GetPosition();
        QVERIFY(position.X() < 300);
        QCOMPARE(position.Y(), 0.0);
        QVERIFY(std::abs(position.X() + position.Z()) < 1e-9);
        // The instrument hears the same.
        const auto pose = SimulatedBench::PoseAt(nowNs());
        QVERIFY(pose && pose->x > 0 && pose->x < 300);
    }

    void gantryHasLimits_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<QString>("reached");
        constexpr double kInfinity = std::numeric_limits<double>::infinity();
        constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("inside") << 9.0 << -4.0 << QStringLiteral("9 -4 0");
        QTest::newRow("on the limit") << 10.0 << -5.0 << QStringLiteral("10 -5 0");
        QTest::newRow("beyond one") << 11.0 << 0.0 << QStringLiteral("10 0 0");
        QTest::newRow("beyond both") << -1e300 << kInfinity << QStringLiteral("-10 5 0");
        QTest::newRow("no number") << kNan << 3.0 << QStringLiteral("0 3 0");
    }

    void gantryHasLimits()
    {
        QFETCH(const double, x);
        QFETCH(const double, y);
        QFETCH(const QString, reached);
        writeSettings(kSettings, "[Gantry]\nSpeed=100000\nSettleMs=0\nMinX=-10\nMaxX=10\nMinY=-5\nMaxY=5\n");
        m_gantry->Start();
        QSignalSpy ready(m_gantry.get(), &CMapperPluginStopAndGo::Ready);
        const bool isInside = std::abs(x) <= 10 && std::abs(y) <= 5;
        if (!isInside)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot reach")));
        moveTo(*m_gantry, x, y, 0);
        QTRY_COMPARE(ready.count(), 1);
        QCOMPARE(textOf(m_gantry->GetPosition()), reached);
    }

    void gantryTakesANewGoalOnTheWay()
    {
        writeSettings(kSettings, "[Gantry]\nSpeed=20\nSettleMs=0\n");
        m_gantry->Start();
        QSignalSpy ready(m_gantry.get(), &CMapperPluginStopAndGo::Ready);
        moveTo(*m_gantry, 400, 0, 0);
        QTRY_VERIFY(m_gantry->GetPosition().X() > 0.2);
        moveTo(*m_gantry, 0, 0, 0);
        QTRY_COMPARE(ready.count(), 1);
        QCOMPARE(textOf(m_gantry->GetPosition()), QStringLiteral("0 0 0"));
    }

    void gantryHalts()
    {
        writeSettings(kSettings, "[Gantry]\nSpeed=20\nSettleMs=0\n");
        QSignalSpy ready(m_gantry.get(), &CMapperPluginStopAndGo::Ready);
        moveTo(*m_gantry, 5, 0, 0); // not started: stays
        m_gantry->Start();
        moveTo(*m_gantry, 400, 0, 0);
        QTRY_VERIFY(m_gantry->GetPosition().X() > 0.2);
        m_gantry->Stop();
        m_gantry->Stop();
        const QString place = textOf(m_gantry->GetPosition());
        QVERIFY(m_gantry->GetPosition().X() < 400);
        moveTo(*m_gantry, 1, 1, 1);
        QTest::qWait(30);
        QCOMPARE(textOf(m_gantry->GetPosition()), place);
        QCOMPARE(ready.count(), 0);
        m_gantry->Shutdown();
    }

    // Threads come and go with the sessions.
    void leavesNoThreadBehind()
    {
        const int before = threadCount();
        for (int i = 0; i < 20; ++i) {
            m_gantry->Start();
            m_mover->Start();
            moveTo(*m_gantry, i, 0, 0);
            m_gantry->Stop();
            m_mover->Stop();
        }
        QCOMPARE(threadCount(), before);
    }

    void benchFollowsTheLastCarrier()
    {
        QVERIFY(!SimulatedBench::PoseAt(nowNs()));
        m_gantry->Start();
        QVERIFY(SimulatedBench::IsProbeMounted());
        QCOMPARE(SimulatedBench::PoseAt(nowNs())->x, 0.0);
        m_mover->Start();
        QVERIFY(SimulatedBench::PoseAt(nowNs())->x != 0.0);
        m_mover->Stop();
        QCOMPARE(SimulatedBench::PoseAt(nowNs())->x, 0.0);
        m_gantry->Stop();
        QVERIFY(!SimulatedBench::IsProbeMounted());
    }

    void moverAsksAlongItsPath_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QStringList>("path");
        QTest::newRow("to and fro")
            << QByteArray("FromX=0\nToX=20\nFromY=-5\nToY=5\nFromZ=1\nToZ=3\nLines=3\n"
                          "Spacing=10\n")
            << QStringList({QStringLiteral("0 -5 1"), QStringLiteral("10 -5 1"), QStringLiteral("20 -5 1"),
                            QStringLiteral("20 0 2"), QStringLiteral("10 0 2"), QStringLiteral("0 0 2"),
                            QStringLiteral("0 5 3"), QStringLiteral("10 5 3"), QStringLiteral("20 5 3")});
        QTest::newRow("one line backwards")
            << QByteArray("FromX=5\nToX=-6\nFromY=0\nToY=7\nLines=1\nSpacing=5\n")
            << QStringList({QStringLiteral("5 0 0"), QStringLiteral("0 0 0"), QStringLiteral("-5 0 0")});
        QTest::newRow("spacing beyond the line")
            << QByteArray("FromX=0\nToX=1\nFromY=0\nToY=9\nLines=2\nSpacing=5\n")
            << QStringList({QStringLiteral("0 0 0"), QStringLiteral("0 9 0")});
        QTest::newRow("one place") << QByteArray("FromX=3\nToX=3\nFromY=0\nToY=0\nLines=1\n")
                                   << QStringList(QStringLiteral("3 0 0"));
    }

    void moverAsksAlongItsPath()
    {
        QFETCH(const QByteArray, settings);
        QFETCH(const QStringList, path);
        writeSettings(kSettings, "[Mover]\nSpeed=1000\nYaw=30\n" + settings);
        QStringList places;
        QThread* reporter = nullptr;
        connect(m_mover.get(), &CMapperPluginOnTheFly::Acquire, this,
                [&](const CPosition& position, const COrientation& orientation) {
                    places.append(textOf(position));
                    QCOMPARE(textOf(orientation), QStringLiteral("0 0 30"));
                });
        connect(
            m_mover.get(), &CMapperPluginOnTheFly::Acquire, m_mover.get(),
            [&] { reporter = QThread::currentThread(); }, Qt::DirectConnection);
        m_mover->Start();
        QTRY_COMPARE(places.size(), path.size());
        QTest::qWait(40);
        QCOMPARE(places, path);
        QCOMPARE(textOf(m_mover->GetPosition()), path.last());
        QCOMPARE(textOf(m_mover->GetOrientation()), QStringLiteral("0 0 30"));
        m_mover->Stop();
        QVERIFY(reporter && reporter != QThread::currentThread());
        // The next session begins at the beginning.
        places.clear();
        m_mover->Start();
        QTRY_COMPARE(places.size(), path.size());
        QCOMPARE(places, path);
        m_mover->Stop();
    }

    void moverDoesNotStopOnItsWay()
    {
        writeSettings(kSettings, "[Mover]\nSpeed=20\nFromX=0\nToX=100\nLines=1\nSpacing=100\n");
        m_mover->Start();
        QTRY_VERIFY(m_mover->GetPosition().X() > 0.5);
        const double x = m_mover->GetPosition().X();
        QVERIFY(x < 100);
        QTRY_VERIFY(m_mover->GetPosition().X() > x);
        m_mover->Stop();
        const QString place = textOf(m_mover->GetPosition());
        QTest::qWait(20);
        QCOMPARE(textOf(m_mover->GetPosition()), place);
        m_mover->Shutdown();
    }

    void moverRepeatsItsPath()
    {
        writeSettings(kSettings, "[Mover]\nSpeed=1000\nFromX=0\nToX=0\nLines=1\nRepeat=true\n");
        QSignalSpy acquire(m_mover.get(), &CMapperPluginOnTheFly::Acquire);
        m_mover->Start();
        QTRY_VERIFY(acquire.count() >= 5);
        m_mover->Stop();
        QCoreApplication::processEvents();
        const int count = acquire.count();
        QTest::qWait(40);
        QCOMPARE(acquire.count(), count);
    }

    void triggerFires_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<bool>("isMapping");
        QTest::addColumn<int>("count");
        QTest::newRow("without end") << QByteArray("Count=0\n") << false << -1;
        QTest::newRow("so often") << QByteArray("Count=3\n") << false << 3;
        QTest::newRow("once for a mapper") << QByteArray("Count=0\n") << true << 1;
    }

    void triggerFires()
    {
        QFETCH(const QByteArray, settings);
        QFETCH(const bool, isMapping);
        QFETCH(const int, count);
        writeSettings(kTriggerSettings, "[Trigger]\nDelayMs=1\nIntervalMs=2\n" + settings);
        if (isMapping)
            m_gantry->Start();
        QSignalSpy trigger(m_trigger.get(), &CTriggerPlugin::Trigger);
        m_trigger->Start();
        QCOMPARE(trigger.count(), 0);
        if (count < 0) {
            QTRY_VERIFY(trigger.count() > 5);
        } else {
            QTRY_COMPARE(trigger.count(), count);
            QTest::qWait(30);
            QCOMPARE(trigger.count(), count);
            m_trigger->Start();
            QTRY_COMPARE(trigger.count(), 2 * count);
        }
        m_trigger->Start();
        m_trigger->Stop();
        m_trigger->Stop();
        const int last = trigger.count();
        QTest::qWait(30);
        QCOMPARE(trigger.count(), last);
        m_trigger->Shutdown();
    }

private:
    std::unique_ptr<CMapperPluginStopAndGo> m_gantry;
    std::unique_ptr<CMapperPluginOnTheFly> m_mover;
    std::unique_ptr<CTriggerPlugin> m_trigger;
};

QTEST_GUILESS_MAIN(tst_SimulatedMapper)
#include "tst_SimulatedMapper.moc"
