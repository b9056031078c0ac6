// SPDX-License-Identifier: GPL-3.0-or-later
#include "weatherscenario.h"

#include "frames.h"

#include <QString>

#include <algorithm>

namespace ork2 {

namespace {

constexpr int kLowestBase = 60;         // metres
constexpr int kHighestBase = 2800;      // metres
constexpr int kHighestLayer = 4900;     // metres
constexpr int kNarrowestGap = 250;      // metres
constexpr int kWidestGap = 1400;        // metres
constexpr int kDriftPerReading = 6;     // metres at most, before the pull to the target
constexpr int kPullDivisor = 90;        // readings it takes to come near the target
constexpr int kScatter = 7;             // metres, of a single measurement
constexpr int kReadingsPerTarget = 240; // on average

} // namespace

WeatherScenario::WeatherScenario(quint32 seed)
    : m_random(seed)
    , m_channel(Channel::Main)
    , m_readingsOnChannel(m_random.between(120, 600))
    , m_readingsOfSky(m_random.between(200, 600))
    , m_readingsOfSecondLayer(m_random.between(60, 300))
    , m_base(m_random.between(400, 1600))
    , m_target(m_random.between(kLowestBase, kHighestBase))
    , m_gap(m_random.between(kNarrowestGap, kWidestGap))
{ }

std::optional<Step> WeatherScenario::next()
{
    return Transmission{readingFrame(nextReading())};
}

Reading WeatherScenario::nextReading()
{
    passTime();
    drift();
    if (m_clear) {
        return {m_channel, m_clearHeight, m_clearHeight};
    }
    const int first = measured(m_base);
    const int second = m_secondLayer ? measured(m_base + m_gap) : kClearSkyText.toInt();
    return {m_channel, first, second};
}

void WeatherScenario::passTime()
{
    if (--m_readingsOnChannel < 0) {
        m_channel = m_channel == Channel::Main ? Channel::Reserve : Channel::Main;
        m_readingsOnChannel =
            m_channel == Channel::Main ? m_random.between(200, 900) : m_random.between(20, 90);
    }
    if (--m_readingsOfSky < 0) {
        m_clear = !m_clear;
        m_readingsOfSky = m_clear ? m_random.between(20, 120) : m_random.between(200, 900);
        m_clearHeight = (m_random.oneIn(2) ? kNoCloudText : kClearSkyText).toInt();
    }
    if (--m_readingsOfSecondLayer < 0) {
        m_secondLayer = !m_secondLayer;
        m_readingsOfSecondLayer = m_random.between(60, 300);
        m_gap = m_random.between(kNarrowestGap, kWidestGap);
    }
}

void WeatherScenario::drift()
{
    if (m_random.oneIn(kReadingsPerTarget)) {
        m_target = m_random.between(kLowestBase, kHighestBase);
    }
    m_base +=
        m_random.between(-kDriftPerReading, kDriftPerReading) + (m_target - m_base) / kPullDivisor;
    m_base = std::clamp(m_base, kLowestBase, kHighestBase);
    m_gap = std::clamp(m_gap + m_random.between(-2, 2), kNarrowestGap, kWidestGap);
}

int WeatherScenario::measured(int height)
{
    const int scattered = std::min(height + m_random.between(-kScatter, kScatter), kHighestLayer);
    // A cloud at this very height would read as a clear sky.
    return scattered == kNoCloudText.toInt() ? scattered + 1 : scattered;
}

} // namespace ork2
