// SPDX-License-Identifier: GPL-3.0-or-later
#include "ceilingwatch.h"

#include "counts.h"

#include <limits>

namespace ork2 {

void CeilingWatch::start(const WatchSettings &settings, qint64 now)
{
    *this = {};
    m_settings = settings;
    m_quietSince = now;
    std::sort(m_settings.thresholds.begin(), m_settings.thresholds.end(), std::greater<>());
    for (const int metres : std::as_const(m_settings.thresholds)) {
        m_thresholds.append({metres, std::nullopt});
    }
}

QList<WatchEvent> CeilingWatch::add(const Sample &sample)
{
    QList<WatchEvent> events;
    if (sample.time <= m_lastSample) {
        return events;
    }
    m_lastSample = sample.time;
    m_quietSince = sample.time;
    if (m_silence) {
        m_silence.reset();
        events.append({WatchEvent::Kind::Resumed, sample.time});
    }
    const auto base = lowestBase(sample);
    if (!base && !isNoCloud(sample)) {
        return events;
    }
    const int height = base.value_or(std::numeric_limits<int>::max());
    for (Threshold &threshold : m_thresholds) {
        if (!threshold.alarm && height < threshold.metres) {
            threshold.alarm =
                WatchEvent{WatchEvent::Kind::Below, sample.time, threshold.metres, height};
            events.append(*threshold.alarm);
        } else if (threshold.alarm && height - m_settings.hysteresis >= threshold.metres) {
            threshold.alarm.reset();
            events.append(
                {WatchEvent::Kind::Above, sample.time, threshold.metres, base.value_or(0)});
        }
    }
    return events;
}

QList<WatchEvent> CeilingWatch::tick(qint64 now)
{
    if (m_silence || now - m_quietSince < kSilenceSeconds) {
        return {};
    }
    m_silence = WatchEvent{WatchEvent::Kind::Silence, m_quietSince};
    return {*m_silence};
}

std::optional<WatchEvent> CeilingWatch::low() const
{
    std::optional<WatchEvent> lowest;
    for (const Threshold &threshold : m_thresholds) {
        if (threshold.alarm) {
            lowest = threshold.alarm;
        }
    }
    return lowest;
}

std::optional<WatchEvent> CeilingWatch::silence() const
{
    return m_silence;
}

} // namespace ork2
