// SPDX-License-Identifier: MIT
#include "CFieldModel.h"

#include <cmath>

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kSecondsPerHour = 3600;

// Taking off whole turns first keeps the phase exact after days.
double phase(double frequency, double timeS)
{
    const double turns = frequency * timeS;
    return kTwoPi * (turns - std::floor(turns));
}

} // namespace

CFieldModel::CFieldModel(const SimulationSettings& settings)
    : m_dc(settings.dc), m_acFrequency(settings.acFrequency), m_ac(settings.ac), m_acThird(settings.acThird),
      m_acFifth(settings.acFifth), m_rotatingAmplitude(settings.rotatingAmplitude),
      m_rotatingFrequency(settings.rotatingFrequency),
      m_driftPerS(settings.driftPerHour * (1 / kSecondsPerHour))
{
}

FieldVector CFieldModel::FieldAt(double timeS) const
{
    const double acPhase = phase(m_acFrequency, timeS);
    const double rotation = phase(m_rotatingFrequency, timeS);
    const FieldVector rotating{m_rotatingAmplitude * std::cos(rotation),
                               m_rotatingAmplitude * std::sin(rotation), 0};
    return m_dc + m_ac * std::sin(acPhase) + m_acThird * std::sin(3 * acPhase) +
           m_acFifth * std::sin(5 * acPhase) + rotating + m_driftPerS * timeS;
}
