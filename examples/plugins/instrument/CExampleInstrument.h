// SPDX-License-Identifier: MIT
#pragma once

#include "CExampleReader.h"

#include <CInstrument.h>

#include <QPointer>

/// An instrument that measures a constant field, in all four trigger modes. The device is read in a thread of
/// its own; everything else, the emit of the blocks included, happens in the main thread. So nothing is
/// emitted any more when StopMeasurement() has returned, and nothing in a unit that is no longer in force.
class CExampleInstrument : public CInstrument
{
    Q_OBJECT

public:
    CExampleInstrument();

public slots:
    void SendTrigger() override;
    bool Connect() override;
    void Disconnect() override;
    void StartMeasurement() override;
    void StopMeasurement() override;
    void CalibrateZeroOffset(bool forceCalibration = false) override;
    void RestoreZeroOffsetToFactory() override;

private:
    void watchParameters();
    void takeOverParameters();
    void startReading();
    void stopReading();
    void onBlock(int reading, const QSharedPointer<CMeasureBlock>& block);

    QPointer<CMeasurementParameters> m_watched;
    Acquisition m_acquisition; ///< in force
    bool m_isTakingOver = false;
    CExampleReader m_reader;
    int m_reading = 0;      ///< counts starts and stops of the reader
    int m_numRequested = 0; ///< blocks still to come in IMMEDIATE mode
    QMetaObject::Connection m_trigger;
};
