// SPDX-License-Identifier: MIT
#pragma once

#include "BoardReading.h"
#include "CIioContext.h"
#include "CSamplingRates.h"
#include "SampleFormat.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QVector>

#include <array>
#include <mutex>
#include <optional>

struct iio_buffer;
struct iio_channel;
struct iio_device;

/// One magnetometer of an open context. Fields are in gauss: (raw + offset) * scale. For one thread, but for
/// CancelBuffer(); calls may last as those of the context.
class CIioMagnetometer
{
    Q_DECLARE_TR_FUNCTIONS(CIioMagnetometer)

public:
    /// The context outlives the magnetometer.
    explicit CIioMagnetometer(CIioContext& context) : m_context(context) {}
    ~CIioMagnetometer();
    CIioMagnetometer(const CIioMagnetometer&) = delete;
    CIioMagnetometer& operator=(const CIioMagnetometer&) = delete;

    /// Finds the device and what its values mean. Gives what is wrong, or an empty text.
    QString Open(const QString& id);

    /// The rates that it can be set to; empty if it does not tell.
    CSamplingRates Rates() const { return m_rates; }
    /// Sets the rate as near as it can be. False if the device refuses it; Rate() holds in any case.
    bool SetRate(double rate);
    /// The rate that the device says it has; 0 if it does not tell.
    double Rate() const;

    /// Asks the device for one sample. A value that is no number counts as an input/output error.
    IioError Read(BoardReading& reading);

    /// Whether scans can be had through a buffer, as far as the device tells.
    bool HasBuffer() const;
    /// Chooses the kernel's trigger: the one that is set stays; otherwise the one named, or the device's own.
    /// Gives what is wrong, or an empty text; a device without triggers needs none.
    QString ChooseTrigger(const QString& name);
    /// Scans of all axes, with their times if the device has them, so many at a time.
    IioError OpenBuffer(int scans);
    /// Waits for the scans.
    IioError Refill(QVector<BoardReading>& readings);
    void CloseBuffer();
    /// From any thread: makes a Refill() that waits return, unless it hangs. The buffer is of no use then.
    void CancelBuffer();
    /// The clock that the times of scans are of, as the kernel names it.
    QString TimestampClock() const;
    /// What the device times of readings count from, in nanoseconds of that clock.
    qint64 FirstTimeNs() const { return m_firstTimeNs.value_or(0); }

private:
    struct Axis
    {
        iio_channel* channel = nullptr;
        double offset = 0;
        double scale = 0;
        SampleFormat format;
        bool isProcessed = false; ///< the kernel has only the value in gauss, no raw one
    };

    QString openAxis(Axis& axis, const char* name);
    void findRates();
    BoardReading readingAt(const std::array<const uchar*, 3>& axes, const uchar* time);
    double largestScale() const;

    CIioContext& m_context;
    iio_device* m_device = nullptr;
    std::array<Axis, 3> m_axes;
    iio_channel* m_time = nullptr; ///< null if scans have no time
    SampleFormat m_timeFormat;
    CSamplingRates m_rates;
    std::optional<qint64> m_firstTimeNs; ///< device times count from it

    std::mutex m_bufferMutex; ///< guards the pointer, not the use of the buffer
    iio_buffer* m_buffer = nullptr;
};
