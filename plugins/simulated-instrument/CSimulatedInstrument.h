// SPDX-License-Identifier: MIT
#pragma once

#include "CSimulatedBlockSource.h"
#include "CStreamingInstrument.h"
#include "SimulationSettings.h"

#include <QTimer>

#include <memory>

/// A three-axis instrument that exists in software only. Its settings file is read again at every connection.
class CSimulatedInstrument : public CStreamingInstrument
{
    Q_OBJECT

public:
    /// `index` counts the simulated instruments from 0.
    CSimulatedInstrument(const SimulationSettings& settings, int index);
    ~CSimulatedInstrument() override;

public slots:
    bool Connect() override;
    void Disconnect() override;
    /// Takes the probe to be in a zero-field chamber. Refused if a field is left there, unless forced. Blocks
    /// for as long as the settings say.
    void CalibrateZeroOffset(bool forceCalibration = false) override;
    void RestoreZeroOffsetToFactory() override;

signals:
    /// The instrument cannot be reached any more.
    void Vanished();

protected:
    std::shared_ptr<CBlockSource> Source() override { return m_source; }
    AcquisitionPacing Pacing() const override;
    double ImmediateRate(const AcquisitionParameters& parameters) const override;
    void PrepareRun() override;

private:
    void fillCapabilities();
    void dropConnection();
    void setZeroCorrection(const FieldVector& correction);
    void report(const QString& message);
    void vanish();

    SimulationSettings m_settings;
    std::shared_ptr<CSimulatedBlockSource> m_source;
    FieldVector m_zeroCorrection; ///< kept by the instrument over a disconnection, as in its memory
    QTimer m_vanishTimer;
};
