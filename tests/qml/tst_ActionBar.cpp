// SPDX-License-Identifier: GPL-3.0-or-later
#include "InitResources.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlPropertyMap>
#include <QTest>

#include <memory>

namespace {

const int kFlagCount = 8;

/// One state of instrument and recording manager; all of them are run through.
struct State
{
    explicit State(int bits)
        : connected(bits & 1), running(bits & 2), playing(bits & 4), holding(bits & 8), recording(bits & 16),
          idleWithData(bits & 32), loaded(bits & 64), stepByStep(bits & 128)
    {
    }

    bool connected;
    bool running;
    bool playing;
    bool holding;
    bool recording;
    bool idleWithData;
    bool loaded;
    bool stepByStep;

    QString Text() const
    {
        QStringList set;
        const std::pair<const char*, bool> flags[] = {
            {"connected", connected}, {"running", running},      {"playing", playing},
            {"holding", holding},     {"recording", recording},  {"idleWithData", idleWithData},
            {"loaded", loaded},       {"stepByStep", stepByStep}};
        for (const auto& flag : flags)
            if (flag.second)
                set << QLatin1String(flag.first);
        return set.join(QLatin1Char('+'));
    }
};

bool resumeCondition(const State& s)
{
    if (s.playing)
        return s.holding;
    return s.recording ? !s.running : true;
}

bool holdCondition(const State& s)
{
    if (s.playing)
        return !s.holding && !s.stepByStep;
    return s.recording ? s.running : false;
}

struct Rule
{
    const char* function;
    bool (*withoutInstrument)(const State&);
    bool (*withInstrument)(const State&);
};

bool never(const State&)
{
    return false;
}

const Rule kRules[] = {
    {"buttonResumeMeasurementVisible", never,
     [](const State& s) { return !s.running && !s.idleWithData && resumeCondition(s); }},
    // No instrument runs that is not there.
    {"buttonHoldVisible",
     [](const State& s) { return s.idleWithData && s.playing && !s.holding && !s.stepByStep; },
     [](const State& s) { return s.running || holdCondition(s); }},
    {"buttonRecordVisible", never,
     [](const State& s) { return !s.playing && !s.recording && !s.idleWithData; }},
    {"buttonPlaybackVisible", [](const State& s) { return !s.playing && s.idleWithData; },
     [](const State& s) { return !s.playing && s.idleWithData; }},
    {"buttonStopVisible", [](const State& s) { return s.playing || s.recording; },
     [](const State& s) { return s.playing || s.recording; }},
    {"buttonEndVisible", [](const State& s) { return !s.playing && s.idleWithData; },
     [](const State& s) { return s.idleWithData; }},
    {"buttonLoadVisible", [](const State& s) { return !s.playing && !s.idleWithData; },
     [](const State& s) { return !s.playing && !s.running && !s.idleWithData; }},
    {"buttonSaveVisible", never, [](const State& s) { return s.idleWithData && !s.loaded; }},
    {"buttonZeroOffsetVisible", never, [](const State& s) { return !s.idleWithData && !s.playing; }},
    {"buttonStepVisible", [](const State& s) { return s.playing && s.stepByStep; },
     [](const State& s) { return s.playing && s.stepByStep; }},
};

} // namespace

/// Which commands the action bar offers, in every state of an operation.
class tst_ActionBar : public QObject
{
    Q_OBJECT

private:
    QQmlPropertyMap m_instrument;
    QQmlPropertyMap m_manager;
    QQmlPropertyMap m_operation;
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_bar;

    void setState(const State& state)
    {
        m_instrument.insert(QStringLiteral("IsRunning"), state.running);
        m_manager.insert(QStringLiteral("IsPlayingBack"), state.playing);
        m_manager.insert(QStringLiteral("IsHolding"), state.holding);
        m_manager.insert(QStringLiteral("IsRecording"), state.recording);
        m_manager.insert(QStringLiteral("IsIdleWithData"), state.idleWithData);
        m_manager.insert(QStringLiteral("IsDataLoaded"), state.loaded);
        m_manager.insert(QStringLiteral("ReplayStepByStep"), state.stepByStep);
        m_operation.insert(QStringLiteral("Instrument"),
                           QVariant::fromValue<QObject*>(state.connected ? &m_instrument : nullptr));
    }

private slots:
    void initTestCase()
    {
        setState(State(0));
        m_operation.insert(QStringLiteral("RecordingManager"), QVariant::fromValue<QObject*>(&m_manager));
        m_engine.rootContext()->setContextProperty(QStringLiteral("ActiveOperation"), &m_operation);
        QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/Resources/Widgets/ActionBar.qml")));
        m_bar.reset(component.create());
        QVERIFY2(m_bar, qPrintable(component.errorString()));
    }

    void cleanupTestCase() { m_bar.reset(); }

    void visibility_data()
    {
        QTest::addColumn<int>("bits");
        for (int bits = 0; bits < 1 << kFlagCount; ++bits)
            QTest::newRow(qPrintable(State(bits).Text())) << bits;
    }

    void visibility()
    {
        QFETCH(int, bits);
        const State state(bits);
        setState(state);
        for (const Rule& rule : kRules) {
            QVariant visible;
            QVERIFY(QMetaObject::invokeMethod(m_bar.get(), rule.function, Q_RETURN_ARG(QVariant, visible)));
            QCOMPARE(static_cast<QMetaType::Type>(visible.type()), QMetaType::Bool);
            const bool expected = (state.connected ? rule.withInstrument : rule.withoutInstrument)(state);
            QVERIFY2(visible.toBool() == expected, rule.function);
        }
    }
};

int main(int argc, char* argv[])
{
    InitResources();
    QGuiApplication application(argc, argv);
    tst_ActionBar test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ActionBar.moc"
