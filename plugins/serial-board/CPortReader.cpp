// SPDX-License-Identifier: MIT
#include "CPortReader.h"

#include "TimeUnits.h"

#include <QElapsedTimer>

#include <chrono>
#include <cmath>

namespace {

constexpr int kWatchMs = 250;
// Silence is noticed after so long, and after so many samples of a slow board.
constexpr double kSilentS = 2;
constexpr double kSilentSamples = 10;

qint64 steadyNs()
{
    using namespace std::chrono;
    return duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

CPortReader::CPortReader(const QString& location, int speed, const CBoardDecoder& decoder,
                         std::shared_ptr<CSampleQueue> queue)
    : m_location(location), m_speed(speed), m_decoder(decoder), m_queue(std::move(queue))
{
    m_watch.setInterval(kWatchMs);
    connect(&m_watch, &QTimer::timeout, this, &CPortReader::onWatch);
}

CPortReader::~CPortReader() = default;

BoardState CPortReader::State() const
{
    const QMutexLocker lock(&m_mutex);
    return m_state;
}

BoardState CPortReader::WaitForPhase(BoardState::Phase phase, unsigned long timeoutMs)
{
    QElapsedTimer elapsed;
    elapsed.start();
    const QMutexLocker lock(&m_mutex);
    while (m_state.phase < phase) {
        const qint64 restMs = static_cast<qint64>(timeoutMs) - elapsed.elapsed();
        if (restMs <= 0 || !m_changed.wait(&m_mutex, static_cast<unsigned long>(restMs)))
            break;
    }
    return m_state;
}

void CPortReader::Open()
{
    m_port = std::make_unique<QSerialPort>();
    m_port->setPortName(m_location);
    m_port->setBaudRate(m_speed);
    connect(m_port.get(), &QSerialPort::readyRead, this, &CPortReader::onReadyRead);
    if (!m_port->open(QIODevice::ReadOnly)) {
        const QMutexLocker lock(&m_mutex);
        m_state.phase = BoardState::Phase::Failed;
        m_state.error = m_port->errorString();
        m_changed.wakeAll();
        return;
    }
    // What the system has kept from before the opening has no time.
    m_port->clear(QSerialPort::Input);
    m_decoder.Begin(steadyNs());
    connect(m_port.get(), &QSerialPort::errorOccurred, this, &CPortReader::onError);
    m_watch.start();
    const QMutexLocker lock(&m_mutex);
    m_state.phase = BoardState::Phase::Waiting;
    m_changed.wakeAll();
}

void CPortReader::onReadyRead()
{
    const qint64 arrivalNs = steadyNs();
    const QByteArray bytes = m_port->readAll();
    const QVector<BoardSample> samples = m_decoder.Feed(bytes, arrivalNs);
    m_queue->Push(samples);
    if (!samples.isEmpty())
        m_lastSampleNs = arrivalNs;
    const QMutexLocker lock(&m_mutex);
    m_state.bytes += bytes.size();
    if (m_state.phase < BoardState::Phase::Ready)
        publish();
    else if (m_state.phase == BoardState::Phase::Ready)
        m_state.rate = m_decoder.Rate();
}

void CPortReader::publish()
{
    if (m_decoder.IsSettled()) {
        m_state.phase = BoardState::Phase::Ready;
        m_state.unit = m_decoder.Unit();
        m_state.rate = m_decoder.Rate();
        m_state.usesDeviceTime = m_decoder.UsesDeviceTime();
        m_lastSampleNs = steadyNs();
    } else if (m_decoder.HasReadings()) {
        m_state.phase = BoardState::Phase::Learning;
    }
    m_changed.wakeAll();
}

void CPortReader::onError(QSerialPort::SerialPortError error)
{
    // A port that was unplugged reads as ended, again and again.
    if (error == QSerialPort::NoError)
        return;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_state.phase == BoardState::Phase::Failed)
            return;
        m_state.phase = BoardState::Phase::Failed;
        m_state.error = m_port->errorString();
        m_changed.wakeAll();
    }
    m_watch.stop();
    // Not from within its own signal.
    QMetaObject::invokeMethod(m_port.get(), &QSerialPort::close, Qt::QueuedConnection);
    emit Lost();
}

void CPortReader::onWatch()
{
    const BoardState state = State();
    if (state.phase != BoardState::Phase::Ready)
        return;
    const double silenceS = static_cast<double>(steadyNs() - m_lastSampleNs) * kSecondsPerNs;
    const bool isSilent = silenceS > std::fmax(kSilentS, kSilentSamples / state.rate);
    if (isSilent == m_isSilent)
        return;
    m_isSilent = isSilent;
    emit SilenceChanged(isSilent);
}
