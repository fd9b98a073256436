// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CInstrument.h"
#include "CInstrumentListProvider.h"
#include "CUnits.h"

/// An instrument that does nothing of its own: who holds it emits its blocks.
class BenchInstrument : public CInstrument
{
    Q_OBJECT

public:
    BenchInstrument()
    {
        SetName(QStringLiteral("Benchmark"));
        SetModel(QStringLiteral("Benchmark"));
        SetSerialNumber(QStringLiteral("BENCH-1"));
        SetUnitList({CUnits::MICRO_TESLA});
        SetTriggerList({CTrigger::CONTINUOUS});
    }

    void SendTrigger() override {}
    bool Connect() override
    {
        SetIsConnected(true);
        return true;
    }
    void Disconnect() override { SetIsConnected(false); }
    void StartMeasurement() override { SetIsRunning(true); }
    void StopMeasurement() override { SetIsRunning(false); }
    void CalibrateZeroOffset(bool /*forceCalibration*/) override {}
    void RestoreZeroOffsetToFactory() override {}
};

class BenchInstrumentListProvider : public CInstrumentListProvider
{
    Q_OBJECT

public:
    QSharedPointer<BenchInstrument> instrument = QSharedPointer<BenchInstrument>::create();

    QList<QSharedPointer<CInstrument>> GetInstrumentList() override { return {instrument}; }
    void SetSerialPortSettings(QString /*portName*/, int /*baudRate*/) override {}
};
