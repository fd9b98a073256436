// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"

#include <QPointer>
#include <QTimer>

/// A quick instrument of a constant field of 50 µT that breaks the rule named by BadMode.h, and no other one.
/// It works in the main thread.
class CBadInstrument : public CInstrument
{
public:
    explicit CBadInstrument(const QString& serialNumber);

    void SendTrigger() override;
    bool Connect() override;
    void Disconnect() override;
    void StartMeasurement() override;
    void StopMeasurement() override;
    void CalibrateZeroOffset(bool forceCalibration = false) override;
    void RestoreZeroOffsetToFactory() override;

private:
    void fillLists();
    void fillBounds();
    void watchParameters();
    void takeOverParameters();
    void onUnitsChanged();
    void startTimer();
    void onTimer();
    void emitBlock();
    QSharedPointer<CMeasureBlock> makeBlock();
    QSharedPointer<CFieldIntensityResult> makeSample(int index);
    void stamp(CFieldIntensityResult& sample, int index) const;

    QPointer<CMeasurementParameters> m_watched;
    QMetaObject::Connection m_trigger;
    QTimer m_timer{this};
    int m_numConnects = 0;
    bool m_isTakingOver = false;
    // In force.
    CTrigger::TriggerMode m_mode = CTrigger::CONTINUOUS;
    CUnits::UnitType m_units = CUnits::MICRO_TESLA;
    int m_blockSize = 1;
    // Of the measurement.
    int m_numRequested = 0; ///< in IMMEDIATE mode
    int m_numBlocks = 0;
    qint64 m_nextNs = 0; ///< of the next sample
    QSharedPointer<CMeasureBlock> m_last;
};
