// SPDX-License-Identifier: MIT
#pragma once

#include "BoardPort.h"
#include "CPortReader.h"
#include "CReadingBlockSource.h"
#include "CStreamingInstrument.h"
#include "SerialBoardSettings.h"

#include <QThread>

#include <memory>

/// A board that prints readings on a serial port. The port is open, and read on a thread of its own, as long
/// as the instrument is connected. The board's own rate rules: parameters that ask for another one are set to
/// it. With averaging, a sample is the mean of so many readings, and samples are the fewer.
class CSerialBoardInstrument : public CStreamingInstrument
{
    Q_OBJECT

public:
    CSerialBoardInstrument(const BoardPort& port, const QString& serialNumber, int speed);
    ~CSerialBoardInstrument() override;

    /// Counts from the next connection on.
    void SetSpeed(int speed) { m_speed = speed; }
    QString Location() const { return m_port.location; }
    /// The port cannot be reached any more.
    void Lose();

public slots:
    /// Waits for readings: the opening of the port may start the board anew.
    bool Connect() override;
    void Disconnect() override;
    /// What is known better of the board's rate by now counts from here on.
    void StartMeasurement() override;
    /// A board that only sends cannot be calibrated: says so in the status.
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
    bool openPort();
    void closePort();
    bool fail(const QString& message);
    void fillCapabilities(const BoardState& state);
    void fillBounds();
    void enforceOwnRate();
    void refineRate();
    void onSilenceChanged(bool isSilent);

    BoardPort m_port;
    int m_speed;
    SerialBoardSettings m_settings;
    std::shared_ptr<CSampleQueue> m_queue;
    std::shared_ptr<CReadingBlockSource> m_source;
    std::unique_ptr<QThread> m_readerThread;
    CPortReader* m_reader = nullptr; ///< lives in m_readerThread, which deletes it at its end
    double m_boardRate = 0;          ///< readings per second
    double m_rate = 0;               ///< samples per second with the averaging in force
    int m_averaging = 1;
};
