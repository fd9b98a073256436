// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CAlarmParametersAcAnalysis.h"
#include "CAlarmParametersMapping.h"
#include "CAlarmParametersMeter.h"
#include "CAlarmParametersSpectrum.h"
#include "CLimitsParameters.h"
#include "CMappingParameters.h"
#include "CMeasurementParameters.h"
#include "CReplayParameters.h"

#include <QObject>

/// The groups of parameters of one operation.
class COperationParameters : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CMeasurementParameters* MeasurementParameters READ MeasurementParameters CONSTANT)
    Q_PROPERTY(CMappingParameters* MappingParameters READ MappingParameters CONSTANT)
    Q_PROPERTY(CLimitsParameters* LimitsParameters READ LimitsParameters CONSTANT)
    Q_PROPERTY(CReplayParameters* ReplayParameters READ ReplayParameters CONSTANT)
    Q_PROPERTY(CAlarmParametersMeter* AlarmParametersMeter READ AlarmParametersMeter CONSTANT)
    Q_PROPERTY(CAlarmParametersSpectrum* AlarmParametersSpectrum READ AlarmParametersSpectrum CONSTANT)
    Q_PROPERTY(CAlarmParametersAcAnalysis* AlarmParametersAcAnalysis READ AlarmParametersAcAnalysis CONSTANT)
    Q_PROPERTY(CAlarmParametersMapping* AlarmParametersMapping READ AlarmParametersMapping CONSTANT)

public:
    using QObject::QObject;

    CMeasurementParameters* MeasurementParameters() { return &m_measurementParameters; }
    const CMeasurementParameters* MeasurementParameters() const { return &m_measurementParameters; }
    CMappingParameters* MappingParameters() { return &m_mappingParameters; }
    const CMappingParameters* MappingParameters() const { return &m_mappingParameters; }
    CLimitsParameters* LimitsParameters() { return &m_limitsParameters; }
    const CLimitsParameters* LimitsParameters() const { return &m_limitsParameters; }
    CReplayParameters* ReplayParameters() { return &m_replayParameters; }
    CAlarmParametersMeter* AlarmParametersMeter() { return &m_alarmParametersMeter; }
    const CAlarmParametersMeter* AlarmParametersMeter() const { return &m_alarmParametersMeter; }
    CAlarmParametersSpectrum* AlarmParametersSpectrum() { return &m_alarmParametersSpectrum; }
    const CAlarmParametersSpectrum* AlarmParametersSpectrum() const { return &m_alarmParametersSpectrum; }
    CAlarmParametersAcAnalysis* AlarmParametersAcAnalysis() { return &m_alarmParametersAcAnalysis; }
    const CAlarmParametersAcAnalysis* AlarmParametersAcAnalysis() const
    {
        return &m_alarmParametersAcAnalysis;
    }
    CAlarmParametersMapping* AlarmParametersMapping() { return &m_alarmParametersMapping; }
    const CAlarmParametersMapping* AlarmParametersMapping() const { return &m_alarmParametersMapping; }

private:
    CMeasurementParameters m_measurementParameters;
    CMappingParameters m_mappingParameters;
    CLimitsParameters m_limitsParameters;
    CReplayParameters m_replayParameters;
    CAlarmParametersMeter m_alarmParametersMeter;
    CAlarmParametersSpectrum m_alarmParametersSpectrum;
    CAlarmParametersAcAnalysis m_alarmParametersAcAnalysis;
    CAlarmParametersMapping m_alarmParametersMapping;
};
