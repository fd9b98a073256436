// SPDX-License-Identifier: MIT
#pragma once

#include <CInstrument.h>

#include <QTimer>

/// An instrument that measures a constant field. It works in the main thread.
class CMinimalInstrument : public CInstrument
{
    Q_OBJECT

public:
    CMinimalInstrument();

    void SendTrigger() override;
    bool Connect() override;
    void Disconnect() override;
    void StartMeasurement() override;
    void StopMeasurement() override;
    void CalibrateZeroOffset(bool forceCalibration) override;
    void RestoreZeroOffsetToFactory() override;

private:
    void deliverBlock();
    QSharedPointer<CFieldIntensityResult> sampleAt(qint64 nanosecondsSinceEpoch) const;

    QTimer m_timer;
};
