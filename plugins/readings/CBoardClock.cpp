// SPDX-License-Identifier: MIT
#include "CBoardClock.h"

#include "TimeUnits.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kSecondsPerNs = 1e-9;
// What of the past the line still knows: long against the jitter, short against the drift of a cheap clock.
constexpr double kMemoryS = 4;
constexpr double kMemoryReadings = 16;
// A rate is known after so many arrivals in such a time, or after fewer of a slow board.
constexpr int kLearnPoints = 8;
constexpr double kLearnS = 0.7;
constexpr int kLearnPointsSlow = 3;
constexpr double kLearnSlowS = 2.5;
constexpr int kMaxLearnPoints = 100000;
// A pause while learning: so much longer than what was usual.
constexpr double kPauseFactor = 5;
constexpr double kPauseS = 0.1;
// Later than this is more than jitter. Systems hold readings up by 16 ms and more before they hand them over.
constexpr double kLateS = 0.025;
constexpr double kLatePeriods = 0.6;
constexpr double kLateJitters = 5;
// However uneven the arrivals are: a longer gap must not pass for jitter, and widen what passes for it.
constexpr double kMaxLateS = 0.1;
constexpr double kJitterWeight = 1.0 / 64;
constexpr int kMaxPending = 4096;
// Device times that differ so much from the arrivals are those of a board that has started anew.
constexpr double kDeviceToleranceS = 1;
constexpr double kDeviceLatenessS = 0.5;
// Counters of 32 bits in microseconds and in milliseconds, whatever the board makes of them.
constexpr std::array<double, 2> kWrapS{4294.967296, 4294967.296};
constexpr qint64 kLeastStepNs = 1000;

} // namespace

QVector<TimedReading> CBoardClock::Arrive(const QVector<BoardReading>& readings, qint64 arrivalNs)
{
    if (readings.isEmpty())
        return {};
    if (!m_startNs)
        m_startNs = arrivalNs;
    const double arrivalS = static_cast<double>(arrivalNs - *m_startNs) * kSecondsPerNs;
    QVector<TimedReading> timed;
    if (!m_isSettled)
        learn(readings, arrivalS);
    else if (m_usesDeviceTime)
        timed = arriveByDevice(readings, arrivalS);
    else
        timed = arriveByCount(readings, arrivalS);
    m_arrivalS = arrivalS;
    return timed;
}

double CBoardClock::Rate() const
{
    const double periodS = m_usesDeviceTime ? m_devicePeriodS : m_line.Slope();
    return periodS > 0 ? 1 / periodS : 0;
}

void CBoardClock::learn(const QVector<BoardReading>& readings, double arrivalS)
{
    for (const BoardReading& reading : readings) {
        m_index += 1 + reading.lostBefore;
        learnDeviceTime(reading);
    }
    const double stepS = (arrivalS - m_arrivalS) / (readings.size() + readings.first().lostBefore);
    const bool isPause = m_points.size() >= kLearnPointsSlow && arrivalS - m_arrivalS > kPauseS &&
                         stepS > kPauseFactor * m_line.Slope();
    if (isPause || m_points.size() >= kMaxLearnPoints)
        beginToLearn();
    m_line.Add(m_index, arrivalS, 1);
    m_points.append({m_index, m_lastDeviceTime.value_or(0), arrivalS});

    const double spanS = arrivalS - m_points.first().arrivalS;
    if (m_line.Slope() > 0 && ((m_points.size() >= kLearnPoints && spanS >= kLearnS) ||
                               (m_points.size() >= kLearnPointsSlow && spanS >= kLearnSlowS)))
        settle();
}

void CBoardClock::learnDeviceTime(const BoardReading& reading)
{
    m_hasDeviceTime = m_hasDeviceTime && reading.deviceTime;
    if (!m_hasDeviceTime)
        return;
    if (m_lastDeviceTime && *reading.deviceTime < *m_lastDeviceTime)
        beginToLearn();
    else if (m_lastDeviceTime && reading.lostBefore == 0)
        m_deviceSteps.append(*reading.deviceTime - *m_lastDeviceTime);
    m_lastDeviceTime = reading.deviceTime;
}

void CBoardClock::beginToLearn()
{
    m_line = {};
    m_points.clear();
    m_deviceSteps.clear();
}

void CBoardClock::settle()
{
    m_isSettled = true;
    m_deviceScale = deviceTimeScale();
    m_usesDeviceTime = m_deviceScale > 0;
    if (m_usesDeviceTime) {
        m_devicePeriodS = deviceTimePeriod() / m_deviceScale;
        m_line = {};
        for (const Point& point : qAsConst(m_points))
            m_line.Add(point.deviceTime / m_deviceScale, point.arrivalS, 1);
        m_rawDeviceS = m_points.last().deviceTime / m_deviceScale;
        m_deviceS = m_rawDeviceS;
    } else {
        double squares = 0;
        for (const Point& point : qAsConst(m_points))
            squares += std::pow(point.arrivalS - m_line.At(point.index), 2);
        m_jitterS = std::sqrt(squares / m_points.size());
    }
    m_points.clear();
    m_deviceSteps.clear();
}

// Device time of a second, or 0 if what the lines have is no time.
double CBoardClock::deviceTimeScale() const
{
    if (!m_hasDeviceTime)
        return 0;
    const double ratio = (m_points.last().deviceTime - m_points.first().deviceTime) /
                         (m_points.last().arrivalS - m_points.first().arrivalS);
    for (const double scale : {1.0, 1e3, 1e6}) {
        if (ratio > scale / 2 && ratio < scale * 2)
            return scale;
    }
    return 0;
}

double CBoardClock::deviceTimePeriod() const
{
    if (m_deviceSteps.isEmpty())
        return (m_points.last().deviceTime - m_points.first().deviceTime) /
               (m_points.last().index - m_points.first().index);
    QVector<double> steps = m_deviceSteps;
    std::sort(steps.begin(), steps.end());
    const double median = steps.at(steps.size() / 2);
    const auto firstPositive = std::upper_bound(steps.cbegin(), steps.cend(), 0.0);
    const double resolution = firstPositive == steps.cend() ? 0 : *firstPositive;
    // Steps of a time in whole units take turns; longer ones are gaps.
    const auto end = std::upper_bound(steps.cbegin(), steps.cend(), median + std::fmax(median, resolution));
    double sum = 0;
    for (auto step = steps.cbegin(); step != end; ++step)
        sum += *step;
    return sum / static_cast<double>(end - steps.cbegin());
}

double CBoardClock::pastWeight(double elapsedS) const
{
    const double periodS = m_usesDeviceTime ? m_devicePeriodS : m_line.Slope();
    const double memoryS = std::fmax(kMemoryS, kMemoryReadings * periodS);
    // What was known before a long pause is still true.
    return std::exp(-std::fmin(elapsedS / memoryS, 1.0 / kMemoryReadings));
}

double CBoardClock::lateness() const
{
    const double jitterS = std::fmin(kLateJitters * m_jitterS, kMaxLateS);
    return std::fmax(kLateS, std::fmax(kLatePeriods * m_line.Slope(), jitterS));
}

QVector<TimedReading> CBoardClock::arriveByCount(const QVector<BoardReading>& readings, double arrivalS)
{
    for (const BoardReading& reading : readings) {
        m_index += 1 + reading.lostBefore;
        m_pending.append({reading, m_index});
    }
    const bool wasWaiting = m_pending.size() > readings.size();
    const double lateS = arrivalS - m_line.At(m_index);
    const double limitS = lateness();
    if (lateS > limitS) {
        // Readings that were held up come quickly now and are less and less late, those after a gap are not.
        const bool isCatchingUp = !wasWaiting || lateS < m_latenessS - limitS / 2;
        if (isCatchingUp && m_pending.size() < kMaxPending) {
            m_latenessS = lateS;
            return {};
        }
        // A board that went on meanwhile has kept its rhythm.
        const double gapS = std::fmin(lateS, m_latenessS);
        const double wholeS = std::round(gapS / m_line.Slope()) * m_line.Slope();
        const double toleranceS = std::fmax(m_line.Slope() / 10, 2 * m_jitterS);
        m_line.Shift(0, std::abs(gapS - wholeS) < toleranceS ? wholeS : gapS);
    } else if (lateS < -limitS) {
        // Nothing arrives before it was sent.
        m_line.Shift(0, lateS);
    } else {
        m_jitterS = std::sqrt((1 - kJitterWeight) * m_jitterS * m_jitterS + kJitterWeight * lateS * lateS);
    }
    m_line.Add(m_index, arrivalS, pastWeight(arrivalS - m_arrivalS));
    return release();
}

QVector<TimedReading> CBoardClock::arriveByDevice(const QVector<BoardReading>& readings, double arrivalS)
{
    for (const BoardReading& reading : readings) {
        if (!reading.deviceTime)
            continue;
        const double deviceS = *reading.deviceTime / m_deviceScale;
        m_deviceS += deviceStep(deviceS, arrivalS - m_arrivalS);
        m_rawDeviceS = deviceS;
        m_pending.append({reading, m_deviceS});
    }
    const double lateS = arrivalS - m_line.At(m_deviceS);
    if (std::abs(lateS) > kDeviceLatenessS)
        m_line.Shift(0, lateS);
    m_line.Add(m_deviceS, arrivalS, pastWeight(arrivalS - m_arrivalS));
    return release();
}

// From the newest reading to one with this device time.
double CBoardClock::deviceStep(double deviceS, double elapsedS) const
{
    const double stepS = deviceS - m_rawDeviceS;
    const double limitS = elapsedS + kDeviceToleranceS;
    if (stepS >= 0 && stepS <= limitS)
        return stepS;
    for (const double wrapS : kWrapS) {
        const double wrappedS = stepS + wrapS;
        if (stepS < 0 && wrappedS >= 0 && wrappedS <= limitS)
            return wrappedS;
    }
    return elapsedS;
}

QVector<TimedReading> CBoardClock::release()
{
    QVector<TimedReading> timed;
    timed.reserve(m_pending.size());
    for (const Pending& pending : qAsConst(m_pending)) {
        const qint64 timeNs = *m_startNs + std::llround(m_line.At(pending.x) * kNsPerSecond);
        m_lastNs = timed.isEmpty() && m_lastNs == 0 ? timeNs : std::max(timeNs, m_lastNs + kLeastStepNs);
        timed.append({pending.reading, m_lastNs});
    }
    m_pending.clear();
    return timed;
}
