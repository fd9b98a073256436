// SPDX-License-Identifier: MIT
#pragma once

#include "CBoardDecoder.h"
#include "CSampleQueue.h"

#include <QMutex>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QTimer>
#include <QWaitCondition>

#include <memory>

/// How far the opening of a board has come.
struct BoardState
{
    enum class Phase { Opening, Waiting, Learning, Ready, Failed };

    Phase phase = Phase::Opening;
    QString error;                           ///< why it failed
    qint64 bytes = 0;                        ///< received so far
    CUnits::UnitType unit = CUnits::UNKNOWN; ///< of the samples
    double rate = 0;                         ///< samples per second, when ready
    bool usesDeviceTime = false;             ///< the board's own clock tells the times
};

/// Opens a port and reads what the board sends into the queue. Nothing is ever written. Lives in a thread of
/// its own; State() and WaitForPhase() may be called from any thread.
class CPortReader : public QObject
{
    Q_OBJECT

public:
    CPortReader(const QString& location, int speed, const CBoardDecoder& decoder,
                std::shared_ptr<CSampleQueue> queue);
    ~CPortReader() override;

    BoardState State() const;
    /// Waits until it has come so far, or has failed, or for `timeoutMs`.
    BoardState WaitForPhase(BoardState::Phase phase, unsigned long timeoutMs);

public slots:
    void Open();

signals:
    /// The port is gone.
    void Lost();
    /// A board that is ready has fallen silent, or sends again.
    void SilenceChanged(bool isSilent);

private:
    void onReadyRead();
    void onError(QSerialPort::SerialPortError error);
    void onWatch();
    void publish();

    const QString m_location;
    const int m_speed;
    CBoardDecoder m_decoder;
    std::shared_ptr<CSampleQueue> m_queue;
    std::unique_ptr<QSerialPort> m_port;
    QTimer m_watch{this};
    qint64 m_lastSampleNs = 0;
    bool m_isSilent = false;

    mutable QMutex m_mutex;
    QWaitCondition m_changed;
    BoardState m_state;
};
