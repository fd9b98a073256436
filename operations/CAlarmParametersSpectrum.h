// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarm.h"

#include <QObject>

/// Alarm of the spectrum: the amplitudes are compared with the exposure limits file.
class CAlarmParametersSpectrum : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CAlarm::AlarmState State READ State WRITE SetState NOTIFY StateChanged)

public:
    using QObject::QObject;

    CAlarm::AlarmState State() const { return m_state; } ///< what a violation causes
    void SetState(CAlarm::AlarmState value);

signals:
    void StateChanged(CAlarm::AlarmState value);

private:
    CAlarm::AlarmState m_state = CAlarm::Off;
};
