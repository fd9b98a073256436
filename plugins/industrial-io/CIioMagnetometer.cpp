// SPDX-License-Identifier: MIT
#include "CIioMagnetometer.h"

#include "IioText.h"
#include "SteadyTime.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <iio.h>

namespace {

// The kernel keeps so many times what is fetched at once, for a reader that is late.
constexpr unsigned kKernelBuffers = 16;
constexpr std::size_t kMaxAttribute = 4096;
constexpr std::array<const char*, 3> kAxisNames{"magn_x", "magn_y", "magn_z"};
const char* const kRate = "sampling_frequency";
const char* const kAvailableRates = "sampling_frequency_available";

// The text of an attribute, which may be absent, or the error.
struct Attribute
{
    QByteArray text;
    IioError error;
};

Attribute made(const QByteArray& buffer, ssize_t result)
{
    if (result < 0)
        return {{}, {static_cast<int>(-result)}};
    return {QByteArray(buffer.constData()).trimmed(), {}};
}

Attribute channelAttribute(const iio_channel* channel, const char* name)
{
    if (!iio_channel_find_attr(channel, name))
        return {{}, {ENOENT}};
    QByteArray buffer(kMaxAttribute, '\0');
    return made(buffer, iio_channel_attr_read(channel, name, buffer.data(), kMaxAttribute - 1));
}

Attribute deviceAttribute(const iio_device* device, const char* name)
{
    if (!iio_device_find_attr(device, name))
        return {{}, {ENOENT}};
    QByteArray buffer(kMaxAttribute, '\0');
    return made(buffer, iio_device_attr_read(device, name, buffer.data(), kMaxAttribute - 1));
}

SampleFormat formatOf(const iio_channel* channel)
{
    const iio_data_format* told = iio_channel_get_data_format(channel);
    SampleFormat format;
    format.bits = static_cast<int>(told->bits);
    format.storageBits = static_cast<int>(told->length);
    format.shift = static_cast<int>(told->shift);
    format.repeat = static_cast<int>(told->repeat);
    format.isSigned = told->is_signed;
    format.isBigEndian = told->is_be;
    return format;
}

} // namespace

CIioMagnetometer::~CIioMagnetometer()
{
    CloseBuffer();
}

QString CIioMagnetometer::Open(const QString& id)
{
    m_device = iio_context_find_device(m_context.Handle(), id.toUtf8().constData());
    if (!m_device)
        return tr("it is gone");
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        const QString problem = openAxis(m_axes.at(i), kAxisNames.at(i));
        if (!problem.isEmpty())
            return problem;
    }
    m_time = iio_device_find_channel(m_device, "timestamp", false);
    if (m_time)
        m_timeFormat = formatOf(m_time);
    if (m_time && (!iio_channel_is_scan_element(m_time) || !m_timeFormat.IsValid()))
        m_time = nullptr;
    findRates();
    return {};
}

// Scale and offset may be those of the axis or shared by all: the library tells both in the same way.
QString CIioMagnetometer::openAxis(Axis& axis, const char* name)
{
    const QString shown = QString::fromLatin1(name);
    axis.channel = iio_device_find_channel(m_device, name, false);
    if (!axis.channel)
        return tr("it has no channel %1").arg(shown);
    axis.format = formatOf(axis.channel);
    axis.isProcessed =
        !iio_channel_find_attr(axis.channel, "raw") && iio_channel_find_attr(axis.channel, "input");
    if (axis.isProcessed)
        return {};

    const Attribute scale = channelAttribute(axis.channel, "scale");
    if (scale.error.code == ENOENT)
        return tr("channel %1 has no scale").arg(shown);
    if (scale.error.code != 0)
        return tr("the scale of channel %1 cannot be read: %2").arg(shown, scale.error.Text());
    axis.scale = numberOfAttribute(scale.text).value_or(0);
    if (axis.scale == 0)
        return tr("the scale of channel %1 is no number: \"%2\"").arg(shown, QString::fromUtf8(scale.text));

    const Attribute offset = channelAttribute(axis.channel, "offset");
    if (offset.error.code == ENOENT)
        return {};
    if (offset.error.code != 0)
        return tr("the offset of channel %1 cannot be read: %2").arg(shown, offset.error.Text());
    const std::optional<double> number = numberOfAttribute(offset.text);
    if (!number)
        return tr("the offset of channel %1 is no number: \"%2\"").arg(shown, QString::fromUtf8(offset.text));
    axis.offset = *number;
    return {};
}

void CIioMagnetometer::findRates()
{
    Attribute available = deviceAttribute(m_device, kAvailableRates);
    if (available.error.code != 0)
        available = channelAttribute(m_axes.front().channel, kAvailableRates);
    m_rates = CSamplingRates::Parse(available.text);
    if (m_rates.IsEmpty())
        m_rates = CSamplingRates::Fixed(Rate());
}

double CIioMagnetometer::Rate() const
{
    Attribute rate = deviceAttribute(m_device, kRate);
    if (rate.error.code != 0)
        rate = channelAttribute(m_axes.front().channel, kRate);
    return std::fmax(0, numberOfAttribute(rate.text).value_or(0));
}

bool CIioMagnetometer::SetRate(double rate)
{
    if (m_rates.IsEmpty() || Rate() == m_rates.Pick(rate))
        return true;
    // Drivers that take whole numbers refuse "80.000000".
    const QByteArray text = QByteArray::number(m_rates.Pick(rate), 'g', 10);
    if (iio_device_find_attr(m_device, kRate))
        return iio_device_attr_write(m_device, kRate, text.constData()) >= 0;
    bool isSet = true;
    for (const Axis& axis : m_axes)
        isSet = iio_channel_attr_write(axis.channel, kRate, text.constData()) >= 0 && isSet;
    return isSet;
}

double CIioMagnetometer::largestScale() const
{
    double largest = 0;
    for (const Axis& axis : m_axes)
        largest = std::fmax(largest, std::abs(axis.scale));
    return largest;
}

IioError CIioMagnetometer::Read(BoardReading& reading)
{
    std::array<double, 3> values{};
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        const Axis& axis = m_axes.at(i);
        const Attribute read = channelAttribute(axis.channel, axis.isProcessed ? "input" : "raw");
        if (read.error.code != 0)
            return read.error;
        const std::optional<double> number = numberOfAttribute(read.text);
        if (!number)
            return {EIO};
        values.at(i) = axis.isProcessed ? *number : (*number + axis.offset) * axis.scale;
    }
    reading.field = {values[0], values[1], values[2]};
    reading.unit = CUnits::GAUSS;
    reading.step = largestScale();
    return {};
}

bool CIioMagnetometer::HasBuffer() const
{
    return std::all_of(m_axes.cbegin(), m_axes.cend(), [](const Axis& axis) {
        return !axis.isProcessed && iio_channel_is_scan_element(axis.channel) && axis.format.IsValid();
    });
}

QString CIioMagnetometer::ChooseTrigger(const QString& name)
{
    const iio_device* present = nullptr;
    if (iio_device_get_trigger(m_device, &present) < 0 || present)
        return {};
    const QString own = QString::fromUtf8(iio_device_get_name(m_device));
    const unsigned count = iio_context_get_devices_count(m_context.Handle());
    for (unsigned i = 0; i < count; ++i) {
        const iio_device* trigger = iio_context_get_device(m_context.Handle(), i);
        const QString called = QString::fromUtf8(iio_device_get_name(trigger));
        const bool isWanted = name.isEmpty() ? !own.isEmpty() && called.startsWith(own) : called == name;
        if (!iio_device_is_trigger(trigger) || !isWanted)
            continue;
        const int result = iio_device_set_trigger(m_device, trigger);
        return result < 0 ? tr("its trigger cannot be set: %1").arg(IioError{-result}.Text()) : QString();
    }
    return name.isEmpty() ? tr("it has no trigger") : tr("there is no trigger %1").arg(name);
}

IioError CIioMagnetometer::OpenBuffer(int scans)
{
    for (const Axis& axis : m_axes)
        iio_channel_enable(axis.channel);
    if (m_time)
        iio_channel_enable(m_time);
    m_firstTimeNs.reset();
    (void)!iio_device_set_kernel_buffers_count(m_device, kKernelBuffers);
    errno = 0;
    iio_buffer* buffer = iio_device_create_buffer(m_device, static_cast<std::size_t>(scans), false);
    if (!buffer)
        return {errno == 0 ? EIO : errno};
    const std::lock_guard<std::mutex> lock(m_bufferMutex);
    m_buffer = buffer;
    return {};
}

IioError CIioMagnetometer::Refill(QVector<BoardReading>& readings)
{
    readings.clear();
    const ssize_t result = iio_buffer_refill(m_buffer);
    if (result < 0)
        return {static_cast<int>(-result)};
    const std::ptrdiff_t step = iio_buffer_step(m_buffer);
    const auto* begin = static_cast<const uchar*>(iio_buffer_start(m_buffer));
    const auto* end = static_cast<const uchar*>(iio_buffer_end(m_buffer));
    std::array<const uchar*, 3> axes{};
    for (std::size_t i = 0; i < m_axes.size(); ++i)
        axes.at(i) = static_cast<const uchar*>(iio_buffer_first(m_buffer, m_axes.at(i).channel));
    const auto* time = m_time ? static_cast<const uchar*>(iio_buffer_first(m_buffer, m_time)) : nullptr;
    // A channel that is not in the scan begins at the end.
    const auto isInScan = [begin, step](const uchar* value) { return value - begin < step; };
    if (!std::all_of(axes.cbegin(), axes.cend(), isInScan))
        return {EIO};
    if (time && !isInScan(time))
        time = nullptr;
    for (; step > 0 && end - begin >= step; begin += step) {
        readings.append(readingAt(axes, time));
        for (const uchar*& axis : axes)
            axis += step;
        if (time)
            time += step;
    }
    return {};
}

BoardReading CIioMagnetometer::readingAt(const std::array<const uchar*, 3>& axes, const uchar* time)
{
    std::array<double, 3> values{};
    for (std::size_t i = 0; i < m_axes.size(); ++i) {
        const Axis& axis = m_axes.at(i);
        const auto raw = static_cast<double>(decodedSample(axis.format, axes.at(i)));
        values.at(i) = (raw + axis.offset) * axis.scale;
    }
    BoardReading reading;
    reading.field = {values[0], values[1], values[2]};
    reading.unit = CUnits::GAUSS;
    reading.step = largestScale();
    if (time) {
        const qint64 timeNs = decodedSample(m_timeFormat, time);
        if (!m_firstTimeNs)
            m_firstTimeNs = timeNs;
        reading.deviceTime = static_cast<double>(timeNs - *m_firstTimeNs) * kSecondsPerNs;
        reading.timeUnit = BoardTimeUnit::Seconds;
    }
    return reading;
}

void CIioMagnetometer::CloseBuffer()
{
    iio_buffer* buffer = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_bufferMutex);
        std::swap(buffer, m_buffer);
    }
    if (buffer)
        iio_buffer_destroy(buffer);
}

void CIioMagnetometer::CancelBuffer()
{
    const std::lock_guard<std::mutex> lock(m_bufferMutex);
    if (m_buffer)
        iio_buffer_cancel(m_buffer);
}

QString CIioMagnetometer::TimestampClock() const
{
    return QString::fromUtf8(deviceAttribute(m_device, "current_timestamp_clock").text);
}
