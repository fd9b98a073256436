// SPDX-License-Identifier: MIT
#pragma once

#include "CRecordingReader.h"
#include "CReplayBlockSource.h"
#include "CStreamingInstrument.h"

#include <memory>

/// A recording in the guise of an instrument. The recording's own rate rules: parameters that ask for another
/// one are set to it.
class CFileReplayInstrument : public CStreamingInstrument
{
    Q_OBJECT

public:
    /// `serialNumber` identifies the recording in the folder.
    CFileReplayInstrument(const QString& path, const QString& serialNumber, const RecordingInfo& info);
    ~CFileReplayInstrument() override;

public slots:
    bool Connect() override;
    void Disconnect() override;
    /// A recording cannot be calibrated: says so in the status.
    void CalibrateZeroOffset(bool forceCalibration = false) override;
    void RestoreZeroOffsetToFactory() override;

protected:
    std::shared_ptr<CBlockSource> Source() override { return m_source; }
    AcquisitionPacing Pacing() const override { return m_pacing; }
    double ImmediateRate(const AcquisitionParameters& parameters) const override;
    void PrepareRun() override;
    void ParametersApplied(CMeasurementParameters& parameters) override;
    void RunExhausted() override;

private:
    void fillCapabilities();
    void enforceOwnRate();

    QString m_path;
    RecordingInfo m_info;
    AcquisitionPacing m_pacing;
    std::shared_ptr<CReplayBlockSource> m_source;
};
