// SPDX-License-Identifier: MIT
#pragma once

#include "CDetachableThread.h"
#include "CIioReader.h"
#include "CReadingBlockSource.h"
#include "CStreamingInstrument.h"
#include "IioDevice.h"
#include "IioSettings.h"

#include <QTimer>

#include <memory>

/// A magnetometer that the kernel drives. It is read on a thread of its own as long as it is connected; calls
/// that hang leave that thread behind, and nothing here waits longer than told. A rate that the device does
/// not have is set to the next one that it has. With averaging, a sample is the mean of so many readings.
class CIioInstrument : public CStreamingInstrument
{
    Q_OBJECT

public:
    explicit CIioInstrument(const IioDevice& device);
    ~CIioInstrument() override;

    const IioDevice& Device() const { return m_device; }
    /// The device cannot be reached any more.
    void Lose(const QString& message);

public slots:
    /// Waits for readings; a few times the time-out of the settings at most.
    bool Connect() override;
    void Disconnect() override;
    /// The kernel knows no calibration: says so in the status.
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
    void ParametersApplied(CMeasurementParameters& parameters) override;

private:
    bool openReader();
    void closeReader(int timeoutMs);
    bool fail(const QString& message);
    void log(const IioState& state) const;
    void fillCapabilities();
    void fillBounds();
    double readingRate(double sampleRate, int averaging) const;
    double sampleRate(double wanted, int averaging) const;
    void enforceRate();
    void onWatch();
    void setSilent(bool isSilent);

    const IioDevice m_device;
    IioSettings m_settings;
    std::shared_ptr<CSampleQueue> m_queue;
    std::shared_ptr<CReadingBlockSource> m_source;
    std::shared_ptr<CIioReader> m_reader; ///< shared with m_thread
    std::unique_ptr<CDetachableThread> m_thread;
    QTimer m_watch{this};
    IioState m_state;       ///< as last seen
    double m_askedRate = 0; ///< readings per second that the reader was last asked for
    int m_averaging = 1;
    bool m_isSilent = false;
};
