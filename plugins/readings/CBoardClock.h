// SPDX-License-Identifier: MIT
#pragma once

#include "BoardReading.h"
#include "CRunningLine.h"

#include <QVector>

#include <optional>

/// A reading and when it was taken, in nanoseconds of the clock that arrivals are told in.
struct TimedReading
{
    BoardReading reading;
    qint64 timeNs = 0;
};

/// Tells when the readings of a board were taken. A board's own time counts, if its lines have one that runs
/// as the host's clock does, in seconds, milliseconds or microseconds: a line fitted to arrivals over device
/// times places it in the host's time, and follows a clock that is a little fast. Otherwise the readings are
/// taken to be evenly spaced, and the line is fitted to arrivals over their count, which takes out the jitter
/// of their transmission. A gap stays a gap in both. Times advance strictly.
///
/// The first second is for learning: no reading of it is given out.
class CBoardClock
{
public:
    /// Readings that arrived together. Gives those whose times are clear now; one that seems late waits for
    /// the next, which shows whether there was a gap or readings were held up.
    QVector<TimedReading> Arrive(const QVector<BoardReading>& readings, qint64 arrivalNs);

    bool IsSettled() const { return m_isSettled; }
    bool UsesDeviceTime() const { return m_usesDeviceTime; }
    /// Readings per second of the host's clock, once settled: the better known the longer it has run.
    double Rate() const;

private:
    /// The last of some readings that arrived together.
    struct Point
    {
        double index = 0;
        double deviceTime = 0; ///< as the board tells it
        double arrivalS = 0;
    };
    struct Pending
    {
        BoardReading reading;
        double x = 0; ///< on the axis of the line
    };

    void learn(const QVector<BoardReading>& readings, double arrivalS);
    void learnDeviceTime(const BoardReading& reading);
    void beginToLearn();
    void settle();
    double deviceTimeScale() const;
    void learnDevicePeriod();
    double periodS() const;
    QVector<TimedReading> arriveByCount(const QVector<BoardReading>& readings, double arrivalS);
    QVector<TimedReading> arriveByDevice(const QVector<BoardReading>& readings, double arrivalS);
    double deviceStep(double deviceS, double elapsedS) const;
    double pastWeight(double elapsedS, double memoryS) const;
    void shift(double dyS);
    void add(double x, double arrivalS);
    void countStep(double stepS);
    double lateness() const;
    QVector<TimedReading> release();

    bool m_isSettled = false;
    bool m_usesDeviceTime = false;
    std::optional<qint64> m_startNs;
    double m_arrivalS = 0;   ///< of the newest readings; all seconds count from m_startNs
    CRunningLine m_line;     ///< arrival over count or device seconds
    CRunningLine m_longLine; ///< the same with a longer memory, for the rate
    double m_settledS = 0;
    qint64 m_lastNs = 0;

    // By count.
    double m_index = 0;
    double m_jitterS = 0; ///< root mean square of arrivals about the line
    QVector<Pending> m_pending;
    double m_latenessS = 0; ///< of the newest of those

    // By device time.
    double m_deviceScale = 1; ///< device time of a second
    double m_rawDeviceS = 0;  ///< newest device time
    double m_deviceS = 0;     ///< the same without wraps and restarts
    // Between readings that follow one another.
    double m_sumOfStepsS = 0;
    double m_numSteps = 0;
    double m_longestStepS = 0; ///< what is longer is a gap

    // While learning.
    QVector<Point> m_points;
    bool m_hasDeviceTime = true;
    std::optional<double> m_lastDeviceTime;
    QVector<double> m_deviceSteps;
};
