// SPDX-License-Identifier: MIT
#include "CIioReader.h"

#include "CIioClock.h"
#include "SteadyTime.h"
#include "TimeUnits.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <limits>

namespace {

// Scans are fetched so often, or one by one.
constexpr double kFetchS = 0.05;
constexpr int kMaxScans = 4096;
// A slow device may take so many periods to give its next scan.
constexpr double kPatientPeriods = 3;
// The clocks of cheap sensors are some per cent off; more than this is another rate.
constexpr double kRateTolerance = 0.25;
constexpr int kRateDigits = 4;
// A busy computer may mistake a rate, but not twice in the same way.
constexpr double kSameRate = 0.1;
constexpr int kMaxLearnings = 3;

constexpr double kMinPollingRate = 1;
constexpr double kMaxPollingRate = 1000;
constexpr double kUsualPollingRate = 20;
// How much of the time may go into asking.
constexpr double kMaxPollingLoad = 0.8;
constexpr int kTrials = 3;
constexpr int kPollingDigits = 2;

bool isWithin(double rate, double expected, double tolerance)
{
    return expected > 0 && std::abs(rate / expected - 1) <= tolerance;
}

double rounded(double value, int digits)
{
    return QString::number(value, 'g', digits).toDouble();
}

} // namespace

CIioReader::CIioReader(const IioCapture& capture, std::shared_ptr<CSampleQueue> queue)
    : m_capture(capture), m_queue(std::move(queue))
{
    m_state.callNs = steadyNs();
}

void CIioReader::Run()
{
    if (open())
        capture();
    m_magnetometer.CloseBuffer();
}

void CIioReader::SetRate(double rate)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_wantedRate = rate;
        ++m_request;
        m_changed.notify_all();
    }
    m_magnetometer.CancelBuffer();
}

void CIioReader::RequestStop()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopping = true;
        m_changed.notify_all();
    }
    m_magnetometer.CancelBuffer();
}

IioState CIioReader::State()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    IioState state = m_state;
    m_state.notices.clear();
    return state;
}

IioState CIioReader::WaitFor(IioState::Phase phase, int timeoutMs)
{
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                           [this, phase] { return m_state.phase >= phase; });
    }
    return State();
}

bool CIioReader::open()
{
    const IioError error = m_context.Open(m_capture.device.uri, m_capture.timeoutMs);
    if (error.code != 0) {
        fail(error.IsTimeout()
                 ? tr("The context %1 does not answer").arg(m_capture.device.uri)
                 : tr("The context %1 cannot be opened: %2").arg(m_capture.device.uri, error.Text()));
        return false;
    }
    beat();
    const QString problem = m_magnetometer.Open(m_capture.device.id);
    if (!problem.isEmpty()) {
        fail(tr("The magnetometer %1 cannot be used: %2").arg(m_capture.device.Location(), problem));
        return false;
    }
    beat();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.phase = IioState::Phase::Starting;
    m_changed.notify_all();
    return true;
}

void CIioReader::capture()
{
    bool isBuffered = m_capture.mayBuffer && m_magnetometer.HasBuffer();
    if (isBuffered) {
        const QString problem = m_magnetometer.ChooseTrigger(m_capture.trigger);
        isBuffered = problem.isEmpty();
        if (!isBuffered)
            notice(tr("The buffer of %1 cannot be used (%2): it is polled instead")
                       .arg(m_capture.device.Location(), problem));
    }
    while (!isAsked(-1)) {
        int request = 0;
        double rate = 0;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            request = m_request;
            rate = m_wantedRate;
        }
        if (isBuffered) {
            const End end = captureBuffer(request, rate);
            m_magnetometer.CloseBuffer();
            if (end == End::Failed)
                return;
            isBuffered = end != End::Unusable;
        } else if (capturePolling(request, rate) == End::Failed) {
            return;
        }
    }
}

CIioReader::End CIioReader::captureBuffer(int request, double rate)
{
    if (rate > 0 && !m_isRateRefused && !m_magnetometer.SetRate(rate)) {
        m_isRateRefused = true;
        notice(tr("The rate of %1 cannot be set: it stays at %2 Hz")
                   .arg(m_capture.device.Location())
                   .arg(m_magnetometer.Rate()));
    }
    beat();
    const double nominal = m_magnetometer.Rate();
    int scans = 1;
    if (nominal > 0) {
        scans = static_cast<int>(std::clamp(nominal * kFetchS, 1.0, static_cast<double>(kMaxScans)));
        m_context.SetTimeout(
            std::max(m_capture.timeoutMs, static_cast<int>(kPatientPeriods / nominal * kMsPerSecond)));
    }
    const IioError error = m_magnetometer.OpenBuffer(scans);
    beat();
    if (isAsked(request))
        return End::Asked;
    if (error.code != 0) {
        notice(tr("The buffer of %1 cannot be used (%2): it is polled instead")
                   .arg(m_capture.device.Location(), error.Text()));
        return End::Unusable;
    }
    beginSeries(m_isRateRefused ? CSamplingRates::Fixed(nominal) : m_magnetometer.Rates(), nominal, true);
    return fetch(request, nominal);
}

CIioReader::End CIioReader::fetch(int request, double nominal)
{
    const std::optional<clockid_t> scanClock =
        m_capture.device.IsNetwork() ? std::nullopt : clockOfName(m_magnetometer.TimestampClock());
    CIioClock clock(scanClock);
    double doubted = 0;
    int learnings = 0;
    QVector<BoardReading> readings;
    while (!isAsked(request)) {
        const IioError error = m_magnetometer.Refill(readings);
        const qint64 arrivalNs = steadyNs();
        beat();
        if (isAsked(request))
            break;
        if (error.IsTimeout() && !m_capture.device.IsNetwork()) {
            if (m_hasReadings)
                continue;
            notice(tr("The buffer of %1 stays empty: it is polled instead").arg(m_capture.device.Location()));
            return End::Unusable;
        }
        if (error.code == EINTR)
            continue;
        if (error.code != 0)
            return failFor(error);
        m_hasReadings = true;
        const bool wasSettled = clock.IsSettled();
        push(clock.Arrive(readings, arrivalNs, m_magnetometer.FirstTimeNs()));
        if (wasSettled || !clock.IsSettled())
            continue;
        const bool isCertain = nominal <= 0 || isWithin(clock.Rate(), nominal, kRateTolerance) ||
                               isWithin(clock.Rate(), doubted, kSameRate);
        if (!isCertain && ++learnings < kMaxLearnings) {
            doubted = clock.Rate();
            clock = CIioClock(scanClock);
        } else {
            settle(clock.Rate(), nominal, clock.UsesDeviceTime());
        }
    }
    return End::Asked;
}

// What the clock has learnt in the first second.
void CIioReader::settle(double measured, double nominal, bool usesDeviceTime)
{
    const bool isOther = !isWithin(measured, nominal, kRateTolerance);
    const double rate = isOther ? rounded(measured, kRateDigits) : nominal;
    if (isOther && nominal > 0)
        notice(tr("%1 gives %2 readings per second, though it is set to %3")
                   .arg(m_capture.device.Location())
                   .arg(rate)
                   .arg(nominal));
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.phase = IioState::Phase::Ready;
    m_state.usesDeviceTime = usesDeviceTime;
    m_state.readingNs = steadyNs();
    if (isOther) {
        m_state.rate = rate;
        m_state.rates = CSamplingRates::Fixed(rate);
        ++m_state.changes;
    }
    m_changed.notify_all();
}

CIioReader::End CIioReader::capturePolling(int request, double rate)
{
    if (m_pollingRates.IsEmpty()) {
        const IioError error = measurePollingRate();
        if (error.code != 0)
            return failFor(error);
    }
    const double pollingRate = m_pollingRates.Pick(rate > 0 ? rate : kUsualPollingRate);
    // A sensor slower than it is asked would give the same values again.
    if (!m_isRateRefused)
        m_magnetometer.SetRate(pollingRate);
    beginSeries(m_pollingRates, pollingRate, false);

    const double periodNs = static_cast<double>(kNsPerSecond) / pollingRate;
    const qint64 startNs = steadyNs();
    qint64 count = 0;
    while (!isAsked(request)) {
        BoardReading reading;
        const qint64 beforeNs = steadyNs();
        const IioError error = m_magnetometer.Read(reading);
        const qint64 afterNs = steadyNs();
        beat();
        if (error.IsGone() || error.IsTimeout())
            return isAsked(request) ? End::Asked : failFor(error);
        const bool isLate = afterNs - startNs > m_capture.timeoutMs * kNsPerMs;
        if (error.code != 0 && isLate && !m_hasReadings)
            return failFor(error);
        m_hasReadings = m_hasReadings || error.code == 0;
        if (error.code == 0)
            push({{reading, beforeNs + (afterNs - beforeNs) / 2}});
        // Readings that were missed are not made up for.
        count =
            std::max(count + 1, static_cast<qint64>(static_cast<double>(afterNs - startNs) / periodNs) + 1);
        const auto dueNs = startNs + std::llround(static_cast<double>(count) * periodNs);
        std::unique_lock<std::mutex> lock(m_mutex);
        if (error.code == 0 && m_state.phase == IioState::Phase::Starting) {
            m_state.phase = IioState::Phase::Ready;
            m_changed.notify_all();
        }
        m_changed.wait_for(lock, std::chrono::nanoseconds(dueNs - steadyNs()),
                           [this, request] { return m_isStopping || m_request != request; });
    }
    return End::Asked;
}

// Bounded by the time that asking takes and by the rate of the sensor.
IioError CIioReader::measurePollingRate()
{
    // The quickest tells: a busy computer is not always busy.
    qint64 readNs = std::numeric_limits<qint64>::max();
    for (int i = 0; i < kTrials; ++i) {
        BoardReading reading;
        const qint64 beforeNs = steadyNs();
        const IioError error = m_magnetometer.Read(reading);
        readNs = std::min(readNs, steadyNs() - beforeNs);
        beat();
        if (error.IsGone() || error.IsTimeout())
            return error;
    }
    const double readS = static_cast<double>(readNs) * kSecondsPerNs;
    double max = std::fmin(rounded(kMaxPollingLoad / readS, kPollingDigits), kMaxPollingRate);
    const CSamplingRates rates = m_magnetometer.Rates();
    if (!rates.IsEmpty()) {
        m_isRateRefused = m_isRateRefused || !m_magnetometer.SetRate(rates.Max());
        const double sensorRate = m_isRateRefused ? m_magnetometer.Rate() : rates.Max();
        if (sensorRate > 0)
            max = std::fmin(max, sensorRate);
    }
    m_pollingRates = CSamplingRates::Between(std::fmin(kMinPollingRate, max), max);
    return {};
}

void CIioReader::beginSeries(const CSamplingRates& rates, double rate, bool isBuffered)
{
    ++m_series;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.isBuffered = isBuffered;
    m_state.rate = rate;
    m_state.rates = rates;
    m_state.readingNs = steadyNs();
    ++m_state.changes;
}

void CIioReader::push(const QVector<TimedReading>& timed)
{
    if (timed.isEmpty())
        return;
    QVector<BoardSample> samples;
    samples.reserve(timed.size());
    for (const TimedReading& reading : timed) {
        BoardSample sample;
        sample.timeNs = reading.timeNs;
        sample.field = reading.reading.field;
        sample.step = reading.reading.step;
        sample.series = m_series;
        samples.append(sample);
    }
    m_queue->Push(samples);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.readingNs = steadyNs();
}

CIioReader::End CIioReader::failFor(const IioError& error)
{
    const QString location = m_capture.device.Location();
    // Over a network a time-out looks like a connection that was closed.
    const bool isLate = m_capture.device.IsNetwork() && m_callNs > m_capture.timeoutMs * kNsPerMs / 2;
    if (error.IsTimeout() || isLate)
        return fail(tr("The magnetometer %1 does not answer").arg(location));
    if (error.IsGone())
        return fail(tr("The magnetometer %1 is gone").arg(location));
    return fail(tr("The magnetometer %1 cannot be read: %2").arg(location, error.Text()));
}

CIioReader::End CIioReader::fail(const QString& problem)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.phase = IioState::Phase::Failed;
    m_state.problem = problem;
    m_changed.notify_all();
    return End::Failed;
}

void CIioReader::notice(const QString& text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_state.notices.append(text);
}

void CIioReader::beat()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const qint64 nowNs = steadyNs();
    m_callNs = nowNs - m_state.callNs;
    m_state.callNs = nowNs;
}

bool CIioReader::isAsked(int request) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isStopping || (request >= 0 && m_request != request);
}
