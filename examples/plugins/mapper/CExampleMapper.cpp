// SPDX-License-Identifier: MIT
#include "CExampleMapper.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMillimetresPerMillisecond = 0.1;
// The probe swings for a moment after it has arrived.
constexpr int kSettleMs = 20;
// Whatever the application asks for, a timer can wait no longer than weeks.
constexpr double kLongestMs = 1e9;

double between(double from, double to, double part)
{
    return from + (to - from) * part;
}

} // namespace

KESTRIX_PLUGIN_FACTORY CMapperPlugin* CreateMapperPlugin()
{
    return new CExampleMapper;
}

CExampleMapper::CExampleMapper()
{
    // MapperType is set by the base class. The user chooses the plug-in by this name, and parameter files
    // find it again by it.
    Name = QStringLiteral("Example mapper");
    m_arrival.setSingleShot(true);
    m_arrival.setTimerType(Qt::PreciseTimer);
    connect(&m_arrival, &QTimer::timeout, this, [this] {
        m_from = m_to;
        m_durationMs = 0;
        emit Ready();
    });
}

void CExampleMapper::Start()
{
    // Open the device here.
    Stop();
}

void CExampleMapper::Stop()
{
    m_arrival.stop();
    m_from = GetPosition();
    m_to = m_from;
    m_durationMs = 0;
}

CPosition CExampleMapper::GetPosition()
{
    const double part = progress();
    CPosition position;
    position.SetX(between(m_from.X(), m_to.X(), part));
    position.SetY(between(m_from.Y(), m_to.Y(), part));
    position.SetZ(between(m_from.Z(), m_to.Z(), part));
    return position;
}

COrientation CExampleMapper::GetOrientation()
{
    return m_orientation;
}

void CExampleMapper::Shutdown()
{
    // Drive to where the probe can be taken off, or close the device.
    Stop();
}

void CExampleMapper::MoveTo(CPosition& position, COrientation& orientation)
{
    m_from = GetPosition();
    m_to = position;
    m_orientation = orientation;
    const double distance = std::hypot(m_to.X() - m_from.X(), m_to.Y() - m_from.Y(), m_to.Z() - m_from.Z());
    m_durationMs = distance / kMillimetresPerMillisecond;
    m_sinceStart.start();
    m_arrival.start(static_cast<int>(std::min(kLongestMs, std::ceil(m_durationMs))) + kSettleMs);
}

double CExampleMapper::progress() const
{
    return m_durationMs > 0 ? std::min(1.0, static_cast<double>(m_sinceStart.elapsed()) / m_durationMs) : 1.0;
}
