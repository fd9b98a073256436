// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CInstrumentListProvider.h"
#include "CMapperPluginStopAndGo.h"
#include "CTriggerPlugin.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <stdexcept>
#include <utility>

/// An instrument that connects as it is told to.
class FakeInstrument : public CInstrument
{
public:
    enum Connecting { Succeeds, Fails, Throws };

    FakeInstrument(const QString& name, const QString& serialNumber)
    {
        SetName(name);
        SetSerialNumber(serialNumber);
    }

    void SendTrigger() override {}
    bool Connect() override
    {
        ++connects;
        if (connecting == Throws)
            throw std::runtime_error("no answer");
        SetIsConnected(connecting == Succeeds);
        return connecting == Succeeds;
    }
    void Disconnect() override
    {
        ++disconnects;
        SetIsRunning(false);
        SetIsConnected(false);
    }
    void StartMeasurement() override
    {
        SetIsRunning(true);
        beInCall();
    }
    void StopMeasurement() override
    {
        SetIsRunning(false);
        beInCall();
    }
    void CalibrateZeroOffset(bool) override { beInCall(); }
    void RestoreZeroOffsetToFactory() override { beInCall(); }

    /// Runs once, within the next call that measures or calibrates.
    std::function<void()> whileCalled;

    Connecting connecting = Succeeds;
    int connects = 0;
    int disconnects = 0;

private:
    void beInCall()
    {
        if (whileCalled)
            std::exchange(whileCalled, nullptr)();
    }
};

class FakeProvider : public CInstrumentListProvider
{
public:
    QList<QSharedPointer<CInstrument>> GetInstrumentList() override
    {
        ++listCalls;
        return instruments;
    }
    void SetSerialPortSettings(QString port, int baudRate) override
    {
        portSettings << port + QLatin1Char('@') + QString::number(baudRate);
    }

    QSharedPointer<FakeInstrument> add(const char* name, const char* serialNumber)
    {
        auto instrument = QSharedPointer<FakeInstrument>::create(QString::fromLatin1(name),
                                                                 QString::fromLatin1(serialNumber));
        instruments << instrument;
        return instrument;
    }

    QList<QSharedPointer<CInstrument>> instruments;
    int listCalls = 0;
    QStringList portSettings;
};

class FakeTrigger : public CTriggerPlugin
{
public:
    void Start() override {}
    void Stop() override {}
    void Shutdown() override { ++shutdowns; }

    int shutdowns = 0;
};

class FakeMapper : public CMapperPluginStopAndGo
{
public:
    void Start() override {}
    void Stop() override {}
    CPosition GetPosition() override { return CPosition(); }
    COrientation GetOrientation() override { return COrientation(); }
    void Shutdown() override { ++shutdowns; }
    void MoveTo(CPosition&, COrientation&) override {}

    int shutdowns = 0;
};

/// Answers message boxes while it lives, in order, and keeps their texts as "text|informative text". A box
/// beyond the last answer is rejected.
class BoxAnswers : public QObject
{
public:
    explicit BoxAnswers(const QList<QMessageBox::StandardButton>& answers = {}) : m_answers(answers)
    {
        m_timer.callOnTimeout(this, [this] { answer(); });
        m_timer.start(1);
    }

    /// Runs once, while the first box is open. A box that it opens is answered before the first one.
    std::function<void()> whileOpen;
    QStringList texts;

private:
    void answer()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return;
        if (whileOpen) {
            QTimer::singleShot(0, this, std::exchange(whileOpen, nullptr));
            return;
        }
        texts << box->text() + QLatin1Char('|') + box->informativeText();
        QAbstractButton* button = m_answers.isEmpty() ? nullptr : box->button(m_answers.takeFirst());
        if (button)
            button->click();
        else
            box->reject();
    }

    QList<QMessageBox::StandardButton> m_answers;
    QTimer m_timer;
};

/// Lets objects that were given to deleteLater go.
inline void deleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
