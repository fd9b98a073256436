// SPDX-License-Identifier: GPL-3.0-or-later
#include "CSpectrumAlarm.h"

#include "AlarmMessage.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSpectrumLimitIntervalMs = 2000;

} // namespace

CSpectrumAlarm::CSpectrumAlarm(CUserNotifier* notifier, QObject* parent)
    : QObject(parent), m_notifier(notifier), m_limitTimer(new QTimer(this))
{
    m_limitTimer->setTimerType(Qt::PreciseTimer);
    connect(m_limitTimer, &QTimer::timeout, this, &CSpectrumAlarm::OnRangeTimerTimedOut);
    m_limitTimer->start(kSpectrumLimitIntervalMs);
}

void CSpectrumAlarm::Stop()
{
    m_limitTimer->stop();
}

void CSpectrumAlarm::OnRangeTimerTimedOut()
{
    m_isQuiet = true;
}

void CSpectrumAlarm::Check(const std::vector<float>& spectrum, const Bins& bins, const Limits& limits,
                           CAlarm::AlarmState state, const std::function<void(bool)>& setFlag)
{
    const auto reaches = [&bins](const QSharedPointer<FrequencyRange>& range) {
        return range->UpperFrequencyLimitValue() >= bins.minimumFrequency;
    };
    auto limit = std::find_if(limits.begin(), limits.end(), reaches);
    const auto count = static_cast<double>(spectrum.size());
    if (limit == limits.end() || !(bins.width > 0.0) || !(bins.minimumFrequency < count * bins.width))
        return;

    // A record can say that it begins below zero.
    const double first = std::max(0.0, std::trunc(bins.minimumFrequency / bins.width));
    for (auto bin = static_cast<std::size_t>(first); bin < spectrum.size() && limit != limits.end(); ++bin) {
        const auto amplitude = static_cast<double>(spectrum[bin]);
        const double frequency = static_cast<double>(bin) * bins.width;
        const bool isViolated = amplitude > (*limit)->ExposureLimitValue();
        if (isViolated)
            m_limitTimer->start(kSpectrumLimitIntervalMs);
        setFlag(isViolated);
        if (isViolated) {
            report(state, frequency, amplitude, (*limit)->ExposureLimitValue());
            return;
        }
        if (frequency >= (*limit)->UpperFrequencyLimitValue())
            ++limit;
    }
}

void CSpectrumAlarm::report(CAlarm::AlarmState state, double frequency, double amplitude, double limit)
{
    giveAlarm(*m_notifier, state, tr("Spectrum is out-of-limit"),
              tr("Frequency = %1 Hz\nExposure = %2\nLimit = %3")
                  .arg(alarmNumberText(frequency), alarmNumberText(amplitude), alarmNumberText(limit)));
    m_isQuiet = false;
}
