// SPDX-License-Identifier: GPL-3.0-or-later
#include "FakeMagnetometer.h"

#include <QDir>
#include <QFile>

#include <array>
#include <chrono>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using std::chrono::steady_clock;

namespace {

constexpr double kUsualRate = 400;

} // namespace

FakeMagnetometer::FakeMagnetometer(int number, const QString& place)
    : m_tree(QStringLiteral("/sys/bus/hardware/i2c-1/%1/iio:device%2").arg(place).arg(number)),
      m_link(QStringLiteral("/sys/bus/iio/devices/iio:device%1").arg(number)),
      m_node(QStringLiteral("/dev/iio:device%1").arg(number))
{
    const QDir tree(m_tree);
    tree.mkpath(QStringLiteral("scan_elements"));
    tree.mkpath(QStringLiteral("buffer"));
    Set("name", "lis3mdl_magn");
    Set("in_magn_x_raw", "-1234");
    Set("in_magn_y_raw", "512");
    Set("in_magn_z_raw", "2900");
    Set("in_magn_scale", "0.000146");
    Set("sampling_frequency", "400.000000");
    Set("sampling_frequency_available", "100 200 400 800");
    for (int i = 0; i < 3; ++i) {
        const QByteArray axis = QByteArray("scan_elements/in_magn_") + "xyz"[i];
        Set((axis + "_en").constData(), "0");
        Set((axis + "_index").constData(), QByteArray::number(i));
    }
    SetType("le:s16/16>>0");
    Set("buffer/enable", "0");
    Set("buffer/length", "128");
    Set("buffer/watermark", "1");
    mkfifo(QFile::encodeName(m_node).constData(), 0600);
}

FakeMagnetometer::~FakeMagnetometer()
{
    Stop();
    Unplug();
    QFile::remove(m_node);
    QDir(m_tree).removeRecursively();
}

void FakeMagnetometer::Set(const char* attribute, const QByteArray& text) const
{
    QFile file(m_tree + QLatin1Char('/') + QLatin1String(attribute));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(text + '\n') < 0)
        qFatal("Cannot write %s", qPrintable(file.fileName()));
}

void FakeMagnetometer::Remove(const char* attribute) const
{
    QFile::remove(m_tree + QLatin1Char('/') + QLatin1String(attribute));
}

QByteArray FakeMagnetometer::Text(const char* attribute) const
{
    QFile file(m_tree + QLatin1Char('/') + QLatin1String(attribute));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // What was written over a longer text may be followed by its rest, as it never is in the kernel.
    return QByteArray(file.readAll().constData()).split('\n').first();
}

void FakeMagnetometer::SetType(const QByteArray& type) const
{
    for (const char axis : {'x', 'y', 'z'})
        Set((QByteArray("scan_elements/in_magn_") + axis + "_type").constData(), type);
}

void FakeMagnetometer::AddTimestamps() const
{
    Set("scan_elements/in_timestamp_en", "0");
    Set("scan_elements/in_timestamp_index", "3");
    Set("scan_elements/in_timestamp_type", "le:s64/64>>0");
    Set("current_timestamp_clock", "realtime");
}

void FakeMagnetometer::RemoveBuffer() const
{
    QDir(m_tree + QStringLiteral("/scan_elements")).removeRecursively();
    QDir(m_tree + QStringLiteral("/buffer")).removeRecursively();
}

void FakeMagnetometer::Plug() const
{
    QDir().mkpath(QStringLiteral("/sys/bus/iio/devices"));
    QFile::link(m_tree, m_link);
}

void FakeMagnetometer::Unplug() const
{
    QFile::remove(m_link);
}

void FakeMagnetometer::Start(std::function<QByteArray(int)> scan)
{
    Stop();
    m_isStopping = false;
    m_thread = std::thread([this, scan = std::move(scan)] { run(scan); });
}

void FakeMagnetometer::Stop()
{
    m_isStopping = true;
    if (m_thread.joinable())
        m_thread.join();
}

void FakeMagnetometer::run(const std::function<QByteArray(int)>& scan)
{
    const int fifo = open(QFile::encodeName(m_node).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    auto due = steady_clock::now();
    int number = 0;
    while (!m_isStopping) {
        if (Text("buffer/enable") == "1") {
            const QByteArray bytes = scan(number++);
            // A full buffer loses what comes.
            if (write(fifo, bytes.constData(), static_cast<size_t>(bytes.size())) < 0)
                --number;
        } else {
            // A buffer that is off keeps nothing.
            std::array<char, 4096> rest{};
            while (read(fifo, rest.data(), rest.size()) > 0) {
            }
        }
        bool isNumber = false;
        const double rate = Text("sampling_frequency").toDouble(&isNumber);
        due += std::chrono::duration_cast<steady_clock::duration>(
            std::chrono::duration<double>(1 / (isNumber && rate > 0 ? rate : kUsualRate)));
        std::this_thread::sleep_until(due);
    }
    close(fifo);
}
