// SPDX-License-Identifier: MIT
#pragma once

#include "IioDevice.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>

#include <condition_variable>
#include <mutex>

/// What was last found in a context.
struct IioScan
{
    int count = 0; ///< scans that have ended
    QList<IioDevice> devices;
    QString
        problem; ///< why the context could not be looked into; empty if it could, or has no devices at all
};

/// Looks again and again which magnetometers a context has: the local one whenever its list of devices has
/// changed, one at another computer every few seconds. Run() is the body of a thread that may be left behind:
/// it uses nothing but this object, and logs nothing. The other operations may be called from any thread.
class CIioScanner
{
    Q_DECLARE_TR_FUNCTIONS(CIioScanner)

public:
    CIioScanner(const QString& uri, int timeoutMs) : m_uri(uri), m_timeoutMs(timeoutMs) {}

    void Run();

    const QString& Uri() const { return m_uri; }
    IioScan Last() const;
    void WaitForFirst(int timeoutMs);
    /// Looks no more until it is told otherwise. What is being looked at is left out.
    void SetPaused(bool isPaused);
    /// Forgets what was found, and looks anew.
    void Forget();
    void RequestStop();

private:
    IioScan look() const;

    const QString m_uri;
    const int m_timeoutMs;

    mutable std::mutex m_mutex; ///< guards all that follows
    std::condition_variable m_changed;
    IioScan m_last;
    bool m_isStopping = false;
    bool m_isPaused = false;
    bool m_isWanted = true; ///< whatever the list of devices says
    int m_forgotten = 0;    ///< counts calls of Forget()
};
