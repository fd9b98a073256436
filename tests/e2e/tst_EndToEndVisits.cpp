// SPDX-License-Identifier: GPL-3.0-or-later
// Hundreds of random changes of page, tab and state, and what they leave behind.
#include "CApplication.h"
#include "COperationMapping.h"
#include "EndToEndTest.h"
#include "PlotDriver.h"
#include "RandomUser.h"

#include <QMap>
#include <QMetaMethod>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

#ifdef __SANITIZE_ADDRESS__
// Three times as slow there.
constexpr int kChanges = 350;
#else
constexpr int kChanges = 500;
#endif
/// By then everything that is made once and kept has been made.
constexpr int kChangesUntilFirstLook = 200;
constexpr quint32 kSeed = 20240517;

/// Reads the number of connections, which only the object itself may do.
class ReceiverCount : public QObject
{
public:
    /// Of each signal of an object that has any, by class and signal.
    static QMap<QByteArray, int> of(const QObject* object)
    {
        QMap<QByteArray, int> counts;
        for (int i = 0; i < object->metaObject()->methodCount(); ++i) {
            const QMetaMethod method = object->metaObject()->method(i);
            if (method.methodType() != QMetaMethod::Signal)
                continue;
            const QByteArray signature = method.methodSignature();
            // A context property that is set to an object listens for its end once more each time.
            if (signature.startsWith("destroyed("))
                continue;
            const int count = (object->*&ReceiverCount::receivers)(QByteArray('2' + signature).constData());
            if (count > 0)
                counts.insert(QByteArray(object->metaObject()->className()) + "::" + signature, count);
        }
        return counts;
    }
};

/// How often each class is among the objects.
QMap<QByteArray, int> countClasses(const QList<QObject*>& objects)
{
    QMap<QByteArray, int> counts;
    for (const QObject* object : objects)
        ++counts[object->metaObject()->className()];
    return counts;
}

/// The entries that differ, as "name before > after".
QByteArray difference(const QMap<QByteArray, int>& before, const QMap<QByteArray, int>& after)
{
    QByteArray text;
    QMap<QByteArray, int> all = before;
    all.insert(after);
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        if (before.value(it.key()) != after.value(it.key()))
            text += it.key() + ' ' + QByteArray::number(before.value(it.key())) + " > " +
                    QByteArray::number(after.value(it.key())) + "; ";
    }
    return text;
}

int countItems(const QQuickItem* item)
{
    int count = 1;
    const QList<QQuickItem*> children = item->childItems();
    for (const QQuickItem* child : children)
        count += countItems(child);
    return count;
}

double heapMegabytes()
{
#ifdef __GLIBC__
    return static_cast<double>(mallinfo2().uordblks) / (1 << 20);
#else
    return 0;
#endif
}

} // namespace

class tst_EndToEndVisits : public EndToEndTest
{
    Q_OBJECT

private:
    /// What there is of everything that must not grow.
    struct Census
    {
        int items = 0;
        QMap<QByteArray, int> objects;
        QMap<QByteArray, int> connections;
        QMap<QByteArray, int> mappingConnections;
        double megabytes = 0;
    };

    std::unique_ptr<RandomUser> m_user;
    QVector<QPointer<QObject>> m_pages;
    QPointer<COperationMapping> m_mapping; ///< once its page has been seen
    int m_mappingVisits = 0;
    int m_mostPlaces = 0;

    RandomUser& user() { return *m_user; }
    int upTo(int count) { return user().UpTo(count); }
    CMainViewModel& shell() { return *scenario().Application()->MainViewModel(); }
    QObject* manager() { return scenario().RecordingManager(); }
    bool isOnMeterPage() { return driver().IsVisible(QStringLiteral("meterPage")); }
    bool isOnMappingPage() { return driver().IsVisible(QStringLiteral("mappingPage")); }

    void remember()
    {
        QObject* page = scenario().PageViewModel();
        if (m_pages.isEmpty() || m_pages.last() != page)
            m_pages.append(page);
    }

    void changePage()
    {
        switch (upTo(8)) {
        case 0:
        case 1:
            return shell().displayInstrumentSelectionPage();
        case 2:
            return visitMapping(upTo(4));
        default:
            shell().displayMeterPage();
        }
    }

    /// Maps, stops, replays or gives up, with the view of that tab.
    void visitMapping(int tab)
    {
        shell().displayMappingPage();
        if (!isOnMappingPage())
            return;
        ++m_mappingVisits;
        m_mapping = qobject_cast<COperationMapping*>(scenario().ActiveOperation());
        remember();
        user().OpenTab(tab);
        if (upTo(2) == 0 && driver().IsVisible(QStringLiteral("playbackButton")))
            QMetaObject::invokeMethod(scenario().PageViewModel(), "start");
        else
            user().GiveCommand({"resume", "resume", "stop", "end"});
        QTest::qWait(upTo(50));
        // On a busy machine the first block of a map may take longer than all visits do.
        if (m_mostPlaces == 0 && m_mapping->property("SessionInProgress").toBool())
            static_cast<void>(QTest::qWaitFor([this] { return blocks() > 0; }, 2000));
        m_mostPlaces = std::max(m_mostPlaces, blocks());
    }

    /// Without a question about data.
    void leaveMapping()
    {
        if (!isOnMappingPage())
            return;
        QMetaObject::invokeMethod(scenario().PageViewModel(), "stop");
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QMetaObject::invokeMethod(scenario().PageViewModel(), "end");
    }

    /// One of the changes; `commands` are those that make sense for the data at hand.
    void change(const QVector<const char*>& commands, const std::function<void()>& other)
    {
        switch (upTo(10)) {
        case 0:
        case 1:
            changePage();
            break;
        case 2:
        case 3:
        case 4:
            user().OpenTab(upTo(3));
            break;
        case 5:
        case 6:
            user().GiveCommand(commands);
            break;
        case 7:
        case 8:
            user().ActOnThePlot();
            break;
        default:
            upTo(4) == 0 ? user().ChangeLayout() : other();
        }
        QTest::qWait(upTo(20));
        remember();
        if (!isOnMeterPage())
            shell().displayMeterPage();
        // The question may have kept the map.
        if (isOnMappingPage()) {
            leaveMapping();
            shell().displayMeterPage();
        }
    }

    /// A state that can be reached from every other one: meter page, first tab, wide window, no data.
    Census lookAround()
    {
        leaveMapping();
        shell().displayMeterPage();
        QObject* page = scenario().PageViewModel();
        for (const char* command : {"hold", "stop"})
            QMetaObject::invokeMethod(page, command);
        answers().ExpectMessage(kQuitQuestion, QMessageBox::Ok);
        QMetaObject::invokeMethod(page, "end");
        shell().SetParameterMenuExpanded(false);
        driver().Window()->resize(1100, 800);
        QTest::qWait(200);
        shell().displayMeterPage();
        remember();
        // Pop-ups that fade, blocks on their way, view models that wait to be deleted.
        QTest::qWait(500);
        for (int i = 0; i < 3; ++i) {
            scenario().Application()->QmlEngine()->collectGarbage();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QTest::qWait(50);
        }

        Census census;
        census.items = countItems(driver().Window()->contentItem());
        census.objects = countClasses(driver().Window()->findChildren<QObject*>() +
                                      scenario().Application()->QmlEngine()->findChildren<QObject*>() +
                                      scenario().PageViewModel()->findChildren<QObject*>());
        const QObject* parameters = scenario()
                                        .ActiveOperation()
                                        ->property("OperationParameters")
                                        .value<QObject*>()
                                        ->property("MeasurementParameters")
                                        .value<QObject*>();
        for (const QObject* object :
             {const_cast<const QObject*>(scenario().ActiveOperation()), const_cast<const QObject*>(manager()),
              parameters, const_cast<const QObject*>(manager()->property("DataSet").value<QObject*>()),
              static_cast<const QObject*>(&shell())})
            census.connections.insert(ReceiverCount::of(object));
        census.mappingConnections = mappingConnections();
        census.megabytes = heapMegabytes();
        return census;
    }

    QMap<QByteArray, int> mappingConnections()
    {
        QMap<QByteArray, int> counts;
        if (!m_mapping)
            return counts;
        CMappingParameters& parameters = *m_mapping->MappingParameters();
        for (const QObject* object : std::initializer_list<const QObject*>{
                 m_mapping, m_mapping->RecordingManager(), m_mapping->RecordingManager()->DataSet(),
                 m_mapping->OperationParameters()->MeasurementParameters(), &parameters,
                 parameters.MapperSourceCartesian()->X(), parameters.MapperSourceFile()->MappingFile(),
                 parameters.SelectedMapper()})
            counts.insert(ReceiverCount::of(object));
        return counts;
    }

    /// The log's, without the style that the environment of the tests asks for, the look for a new version at
    /// an address that nobody has, and a tool tip that becomes due just after its control has gone.
    QStringList warnings()
    {
        QStringList found;
        const QStringList lines = scenario().LogText().split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            if ((line.startsWith(QLatin1String("[WARN]")) || line.startsWith(QLatin1String("[CRIT]"))) &&
                !line.contains(QLatin1String("Cannot find style")) &&
                !line.contains(QLatin1String("QML ToolTip: cannot find any window")) &&
                !line.contains(QLatin1String("VersionChecker: CURL error")))
                found << line;
        }
        return found;
    }

    void verifyNothingGrew(const Census& first, const Census& last)
    {
        qInfo("%.1f MB of heap after %d changes, %.1f after %d", first.megabytes, kChangesUntilFirstLook,
              last.megabytes, kChanges);
        QCOMPARE(last.items, first.items);
        QCOMPARE(difference(first.connections, last.connections), QByteArray());
        QCOMPARE(difference(first.mappingConnections, last.mappingConnections), QByteArray());
        QCOMPARE(difference(first.objects, last.objects), QByteArray());
        // Qt keeps a few kilobytes of each dialog; pages that were kept would be seven megabytes and more.
        QVERIFY(last.megabytes < first.megabytes + 4);
        QCOMPARE(warnings(), QStringList());
        QVERIFY(m_pages.size() > kChanges / 10);
        const auto alive = std::count_if(m_pages.begin(), m_pages.end(),
                                         [](const QPointer<QObject>& page) { return !page.isNull(); });
        QCOMPARE(alive, 1);
    }

    void makeChanges(const QVector<const char*>& commands, const std::function<void()>& other,
                     const std::function<void()>& prepare)
    {
        m_user = std::make_unique<RandomUser>(scenario(), kSeed);
        answers().AnswerAlways(kQuitQuestion,
                               [this] { return upTo(2) == 0 ? QMessageBox::Ok : QMessageBox::Cancel; });
        // The window keeps what it made for the first wheel event.
        user().OpenTab(1);
        QVERIFY(driver().WaitFor(QStringLiteral("chartView")));
        PlotDriver(driver()).Wheel(120);
        // And the scene of the vectors.
        visitMapping(3);
        QVERIFY(driver().WaitFor(QStringLiteral("vectorsScene")));
        leaveMapping();
        shell().displayMeterPage();
        QVERIFY(isOnMeterPage());
        Census first;
        prepare();
        for (int i = 0; i < kChanges; ++i) {
            if (i == kChangesUntilFirstLook) {
                first = lookAround();
                prepare();
            }
            change(commands, other);
        }
        verifyNothingGrew(first, lookAround());
    }

private slots:
    void manyVisitsInASession()
    {
        // Fifty blocks of twenty samples a second.
        Scenario::WriteMeasureSettings(QStringLiteral(
            "<Units>uT</Units><AcquisitionRate>1000</AcquisitionRate><DisplayRate>50</DisplayRate>"
            "<TriggerMode>Continuous</TriggerMode>"));
        Scenario::WriteMapperSettings(
            QStringLiteral("[Gantry]\nSpeed=100000\nAngularSpeed=100000\nSettleMs=1\n"));
        startWithDefaultInstrument();
        const auto resume = [this] { QMetaObject::invokeMethod(scenario().PageViewModel(), "resume"); };
        int most = 0;
        makeChanges(
            {"resume", "resume", "resume", "hold", "record", "stop", "end"},
            [&] {
                QObject* page = scenario().PageViewModel();
                most = std::max(most, blocks());
                page->setProperty("SelectedProbeAxisIndex", upTo(3));
                page->setProperty("SelectedModeIndex", upTo(2));
                page->setProperty("RotEnable", upTo(2) == 0);
            },
            resume);
        QVERIFY2(most > 10, qPrintable(QString::number(most)));
        QVERIFY2(m_mappingVisits > kChanges / 100, qPrintable(QString::number(m_mappingVisits)));
        QVERIFY(m_mostPlaces > 0);
        QVERIFY(scenario().CloseWindow());
    }

    void manyVisitsInAReplay()
    {
        startWithDefaultInstrument();
        makeRecord(30);
        const QString path = saveRecord(QStringLiteral("visited.qdr.xml"));
        QVERIFY(!path.isEmpty());
        answers().AnswerFileDialogAlways(QStringLiteral("Open File"), path);
        int replayed = 0;
        const auto load = [this] {
            if (!scenario().Flag("IsIdleWithData") && !scenario().Flag("IsPlayingBack"))
                QMetaObject::invokeMethod(scenario().PageViewModel(), "load");
            QMetaObject::invokeMethod(scenario().PageViewModel(), "start");
        };
        makeChanges(
            {"playback", "playback", "resume", "hold", "step", "stop", "load"},
            [&] {
                replayed += scenario().Flag("IsPlayingBack") ? 1 : 0;
                QObject* box =
                    scenario().PageViewModel()->property("ReplayParametersViewModel").value<QObject*>();
                switch (upTo(4)) {
                case 0:
                    box->setProperty("SelectedTimeWarpIndex", 3 + upTo(3));
                    break;
                case 1:
                    box->setProperty("StepByStepMode", upTo(3) == 0);
                    break;
                case 2:
                    QMetaObject::invokeMethod(manager(), "playCurrentBlock", Q_ARG(int, 1 + upTo(30)));
                    break;
                default:
                    load();
                }
            },
            load);
        // How often the replay was at work when it was looked at, which depends on the machine.
        QVERIFY(replayed > 0);
        QVERIFY(scenario().CloseWindow());
    }
};

END_TO_END_MAIN(tst_EndToEndVisits)
#include "tst_EndToEndVisits.moc"
