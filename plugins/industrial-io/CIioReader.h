// SPDX-License-Identifier: MIT
#pragma once

#include "CBoardClock.h"
#include "CIioContext.h"
#include "CIioMagnetometer.h"
#include "CSampleQueue.h"
#include "CSamplingRates.h"
#include "IioDevice.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <condition_variable>
#include <memory>
#include <mutex>

/// How a magnetometer is to be read.
struct IioCapture
{
    IioDevice device;
    int timeoutMs = 3000;
    bool mayBuffer = true;
    QString trigger; ///< of the kernel; empty: the device's own
};

/// How far the reading of a magnetometer has come.
struct IioState
{
    /// The context is opened; readings are waited for; they have come; nothing more will come.
    enum class Phase { Opening, Starting, Ready, Failed };

    Phase phase = Phase::Opening;
    QString problem;     ///< why it failed
    QStringList notices; ///< for the log, since they were last asked for
    bool isBuffered = false;
    bool usesDeviceTime = false; ///< scans carry their times
    CSamplingRates rates;        ///< that can be asked for
    double rate = 0;             ///< readings per second
    int changes = 0;             ///< counts changes of rates and rate
    qint64 callNs = 0;           ///< when the library was last heard of, by the steady clock
    qint64 readingNs = 0;        ///< when the last reading came
};

/// Reads one magnetometer into a queue, through its buffer if it has one that can be used, else by asking it
/// again and again. Run() is the body of a thread that may be left behind: it uses nothing but this object,
/// and logs nothing. The other operations may be called from any thread and never wait for the library.
class CIioReader
{
    Q_DECLARE_TR_FUNCTIONS(CIioReader)

public:
    CIioReader(const IioCapture& capture, std::shared_ptr<CSampleQueue> queue);

    void Run();

    /// Asks for another rate: readings of it are of another series.
    void SetRate(double rate);
    void RequestStop();
    /// Takes the notices.
    IioState State();
    /// Waits until it has come so far, or has failed, or for `timeoutMs`.
    IioState WaitFor(IioState::Phase phase, int timeoutMs);

private:
    enum class End { Asked, Failed, Unusable };

    bool open();
    void capture();
    End captureBuffer(int request, double rate);
    End fetch(int request, double nominal);
    void settle(double measured, double nominal, bool usesDeviceTime);
    End capturePolling(int request, double rate);
    IioError measurePollingRate();
    void push(const QVector<TimedReading>& timed);

    void beginSeries(const CSamplingRates& rates, double rate, bool isBuffered);
    End fail(const QString& problem);
    End failFor(const IioError& error);
    void notice(const QString& text);
    void beat();
    bool isAsked(int request) const;

    const IioCapture m_capture;
    std::shared_ptr<CSampleQueue> m_queue;
    CIioContext m_context;
    CIioMagnetometer m_magnetometer{m_context};

    // Of the thread alone.
    CSamplingRates m_pollingRates;
    quint32 m_series = 0;
    bool m_hasReadings = false; ///< some have come once
    bool m_isRateRefused = false;
    qint64 m_callNs = 0; ///< how long the last call took

    mutable std::mutex m_mutex; ///< guards all that follows
    std::condition_variable m_changed;
    IioState m_state;
    double m_wantedRate = 0; ///< 0: whatever it has
    int m_request = 0;       ///< counts wishes for other rates
    bool m_isStopping = false;
};
