// SPDX-License-Identifier: GPL-3.0-or-later
#include "CBadMapper.h"

#include "BadMode.h"

#include <limits>

namespace {

constexpr int kMoveMs = 5;

} // namespace

CBadMapper::CBadMapper()
{
    Name = QStringLiteral("Bad mapper");
    if (isBad("mapper-type"))
        MapperType = kOnTheFly;
    m_arrival.setSingleShot(true);
    connect(&m_arrival, &QTimer::timeout, this, [this] {
        emit Ready();
        if (isBad("ready-twice"))
            emit Ready();
    });
}

void CBadMapper::Start()
{
    if (isBad("ready-unasked"))
        m_arrival.start(kMoveMs);
}

void CBadMapper::Stop()
{
    m_arrival.stop();
}

CPosition CBadMapper::GetPosition()
{
    return m_position;
}

COrientation CBadMapper::GetOrientation()
{
    return m_orientation;
}

void CBadMapper::Shutdown()
{
    Stop();
}

void CBadMapper::MoveTo(CPosition& position, COrientation& orientation)
{
    if (!isBad("position-off"))
        m_position = position;
    if (isBad("position-invalid"))
        m_position.SetY(std::numeric_limits<double>::quiet_NaN());
    m_orientation = orientation;
    if (!isBad("signal-missing"))
        m_arrival.start(kMoveMs);
}
