// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "FrequencyRange.h"

#include <QList>
#include <QObject>
#include <QSharedPointer>
#include <QTimer>

#include <functional>
#include <vector>

class CUserNotifier;

/// Compares the amplitudes of a spectrum with the staircase of the exposure limits and tells the user of a
/// violation: a flag, and a message with every spectrum that is over its limits.
class CSpectrumAlarm : public QObject
{
    Q_OBJECT

public:
    /// The notifier must outlive the alarm.
    explicit CSpectrumAlarm(CUserNotifier* notifier, QObject* parent = nullptr);

    using Limits = QList<QSharedPointer<FrequencyRange>>;

    /// Where the bins of a spectrum lie, in Hz.
    struct Bins
    {
        double width;            ///< distance of two bins
        double minimumFrequency; ///< no bin below is looked at
    };

    /// Walks the bins up to the first violation, and calls `setFlag` with the result of each comparison.
    /// Nothing is compared without bins or limits above the minimum frequency.
    void Check(const std::vector<float>& spectrum, const Bins& bins, const Limits& limits,
               CAlarm::AlarmState state, const std::function<void(bool)>& setFlag);
    /// The two seconds without a violation are not waited for any more.
    void Stop();

    /// No violation was seen for two seconds. The messages here do not wait for it, those of samples do.
    bool IsQuiet() const { return m_isQuiet; }

public slots:
    void OnRangeTimerTimedOut();

private:
    void report(CAlarm::AlarmState state, double frequency, double amplitude, double limit);

    CUserNotifier* const m_notifier;
    QTimer* const m_limitTimer;
    bool m_isQuiet = false;
};
