// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"
#include "CAxis.h"
#include "CFieldIntensityResult.h"
#include "CMeasureBlock.h"
#include "CUnits.h"

#include <QObject>
#include <QTimer>

#include <functional>

class CUserNotifier;

/// Compares the samples of blocks with a minimum and a maximum and tells the user of a violation: a flag with
/// every block, and a message at most once until no violation was seen for two seconds, or until state or
/// axis change.
class CBlockAlarm : public QObject
{
    Q_OBJECT

public:
    /// What a block is compared with.
    struct Limits
    {
        CAlarm::AlarmState state;
        CAxis::AxisType axis;
        double minimum;
        double maximum;
        CUnits::UnitType unit; ///< label of the limits, which are plain numbers
    };

    /// Units of the samples and of their uncertainty on the page.
    struct DisplayUnits
    {
        CUnits::UnitType field;
        CUnits::UnitType uncertainty;
    };

    /// The first violation gives a message at once only if it `mayNotify`. The notifier must outlive the
    /// alarm. State and axis count as seen.
    CBlockAlarm(CUserNotifier* notifier, CAlarm::AlarmState state, CAxis::AxisType axis, bool mayNotify,
                QObject* parent = nullptr);

    /// Calls `setFlag` with the result of each comparison up to the first violation.
    void Check(const CMeasureBlock& block, const Limits& limits, const DisplayUnits& units,
               const std::function<void(bool)>& setFlag);
    /// No message becomes due any more by time.
    void Stop();

    CAlarm::AlarmState LastState() const { return m_lastState; } ///< seen by the last check
    CAxis::AxisType LastAxis() const { return m_lastAxis; }      ///< seen by the last check

public slots:
    void OnRangeTimerTimedOut();

private:
    void report(const Limits& limits, tFlux value) const;

    CUserNotifier* const m_notifier;
    CAlarm::AlarmState m_lastState;
    CAxis::AxisType m_lastAxis;
    QTimer* const m_limitTimer;
    bool m_mayNotify;
};
