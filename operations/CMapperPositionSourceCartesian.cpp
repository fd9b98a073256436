// SPDX-License-Identifier: GPL-3.0-or-later
#include "CMapperPositionSourceCartesian.h"

#include <QDebug>

#include <algorithm>

namespace {

/// In whatever length unit the mapper has.
constexpr double kTooSmallStep = 0.001;

} // namespace

bool CMapperPositionSourceCartesian::Walk::begin()
{
    value = start;
    return value <= stop;
}

bool CMapperPositionSourceCartesian::Walk::advance()
{
    // A step that is lost against a huge value would go on for ever.
    const double next = value + step;
    if (!(next > value) || !(next <= stop))
        return false;
    value = next;
    return true;
}

CMapperPositionSourceCartesian::CMapperPositionSourceCartesian(QObject* parent)
    : CMapperPositionSource(Cartesian, parent)
{
    for (const CAxisStepSeries* axis : {&m_x, &m_y, &m_z})
        connect(axis, &CAxisStepSeries::Updated, this, &CMapperPositionSourceCartesian::InitializePositions);
}

void CMapperPositionSourceCartesian::Reset()
{
    InitializePositions();
}

void CMapperPositionSourceCartesian::InitializePositions()
{
    m_positionIndex = 0;
    m_hasPosition = beginWalks();
}

bool CMapperPositionSourceCartesian::beginWalks()
{
    const auto isTooSmall = [](const CAxisStepSeries& axis, const char* message) {
        if (!(axis.StepSize() <= kTooSmallStep))
            return false;
        qDebug("%s", message);
        return true;
    };
    if (isTooSmall(m_x, "X.StepSize is too small") || isTooSmall(m_y, "Y.StepSize is too small") ||
        isTooSmall(m_z, "Z.StepSize is too small"))
        return false;

    const auto walkOf = [](const CAxisStepSeries& axis) {
        return Walk{axis.Start(), axis.Stop(), axis.StepSize(), 0};
    };
    m_walks = {walkOf(m_x), walkOf(m_y), walkOf(m_z)};
    return std::all_of(m_walks.begin(), m_walks.end(), [](Walk& walk) { return walk.begin(); });
}

bool CMapperPositionSourceCartesian::GetNextPosition(CPosition& position, COrientation& orientation)
{
    if (!m_hasPosition)
        return false;
    orientation.SetRoll(m_orientation.Roll());
    orientation.SetPitch(m_orientation.Pitch());
    orientation.SetYaw(m_orientation.Yaw());
    position.SetX(m_walks[0].value);
    position.SetY(m_walks[1].value);
    position.SetZ(m_walks[2].value);
    ++m_positionIndex;

    // As the digits of a number count on, the last axis first.
    m_hasPosition = false;
    for (auto walk = m_walks.rbegin(); walk != m_walks.rend(); ++walk) {
        if (walk->advance()) {
            m_hasPosition = true;
            break;
        }
        walk->begin();
    }
    return true;
}
