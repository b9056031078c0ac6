// SPDX-License-Identifier: GPL-3.0-or-later
#include "weatherscenario.h"

#include "frames.h"

#include <QString>

#include <algorithm>

namespace ork2 {

namespace {

constexpr int kMinBase = 60;            // metres
constexpr int kMaxBase = 2800;          // metres
constexpr int kMaxLayer = 4900;         // metres
constexpr int kMinGap = 250;            // metres
constexpr int kMaxGap = 1400;           // metres
constexpr int kDriftPerReading = 6;     // metres at most, before the pull to the target
constexpr int kPullDivisor = 90;        // time constant of the pull to the target, in readings
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
    , m_target(m_random.between(kMinBase, kMaxBase))
    , m_gap(m_random.between(kMinGap, kMaxGap))
{ }

std::optional<Step> WeatherScenario::next()
{
    return Transmission{readingFrame(nextReading())};
}

Reading WeatherScenario::nextReading()
{
    advanceTime();
    drift();
    if (m_clear) {
        return {m_channel, m_clearHeight, m_clearHeight};
    }
    const int first = measured(m_base);
    const int second = m_secondLayer ? measured(m_base + m_gap) : kClearSkyText.toInt();
    return {m_channel, first, second};
}

void WeatherScenario::advanceTime()
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
        m_gap = m_random.between(kMinGap, kMaxGap);
    }
}

void WeatherScenario::drift()
{
    if (m_random.oneIn(kReadingsPerTarget)) {
        m_target = m_random.between(kMinBase, kMaxBase);
    }
    m_base +=
        m_random.between(-kDriftPerReading, kDriftPerReading) + (m_target - m_base) / kPullDivisor;
    m_base = std::clamp(m_base, kMinBase, kMaxBase);
    m_gap = std::clamp(m_gap + m_random.between(-2, 2), kMinGap, kMaxGap);
}

int WeatherScenario::measured(int height)
{
    const int scattered = std::min(height + m_random.between(-kScatter, kScatter), kMaxLayer);
    // A cloud at exactly this height would mean a clear sky.
    return scattered == kNoCloudText.toInt() ? scattered + 1 : scattered;
}

} // namespace ork2
