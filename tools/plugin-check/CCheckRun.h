// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CCheckJournal.h"
#include "CheckOptions.h"

#include <QElapsedTimer>
#include <QJsonValue>
#include <QObject>
#include <QSet>
#include <QString>

#include <exception>
#include <functional>

/// How long a call may take.
enum class CallKind {
    Instant, ///< must not block the main thread
    Blocking ///< may block it for a while, as Connect
};

/// The check of one library, in the process that loads it. What the checks have in common: every call into
/// the plug-in goes through Call() or Guarded(), every wait through Wait(), everything found through Find().
/// Main thread only.
class CCheckRun
{
public:
    explicit CCheckRun(const CheckOptions& options);

    /// Does everything. False if the journal cannot be written.
    bool Execute();

    const CheckOptions& Options() const { return m_options; }

    void Phase(const QString& name);
    /// Reported once in each phase.
    void Find(const char* code, const QString& detail);
    void Fact(const QString& name, const QJsonValue& value);

    /// Calls into the plug-in. An exception ends the whole check, as it would end the application.
    template <class Function> void Call(const char* name, Function function)
    {
        QString error;
        if (!measured(name, CallKind::Instant, error, [&function] { function(); }))
            endAfterException(name, error);
    }
    template <class Function> void BlockingCall(const char* name, Function function)
    {
        QString error;
        if (!measured(name, CallKind::Blocking, error, [&function] { function(); }))
            endAfterException(name, error);
    }
    /// The same for a call whose exceptions the application catches. False if it threw.
    template <class Function> bool Guarded(const char* name, QString& error, Function function)
    {
        return measured(name, CallKind::Blocking, error, [&function] { function(); });
    }

    /// Runs the event loop until it is so, at most `ms`. False if it did not come to be so.
    bool Wait(const char* what, int ms, const std::function<bool()>& isSo);
    /// Runs the event loop.
    void Rest(const char* what, int ms);

    /// The object that the factory or a getter of the plug-in answered. False if it cannot be used.
    bool CheckObject(const QObject& object, const QMetaObject& expected, const char* name);
    /// Deletes a plug-in as the application does.
    void Delete(QObject* plugin);

private:
    bool measured(const char* name, CallKind kind, QString& error, const std::function<void()>& function);
    void endAfterException(const char* name, const QString& error);
    void checkLibrary();
    void checkThreads(int numBefore);

    CheckOptions m_options;
    CCheckJournal m_journal;
    QString m_phase;
    QSet<QString> m_found; ///< codes of this phase
};
