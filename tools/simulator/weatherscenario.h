// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readingframe.h"
#include "scenario.h"
#include "seededrandom.h"

namespace ork2 {

// Endless ordinary weather: a drifting cloud base, a temporary second layer above it, periods of
// clear sky, and occasionally the reserve channel. Durations are counted in readings.
class WeatherScenario : public Scenario
{
public:
    explicit WeatherScenario(quint32 seed);

    [[nodiscard]] std::optional<Step> next() override;
    [[nodiscard]] Reading nextReading();

private:
    void advanceTime();
    void drift();
    [[nodiscard]] int measured(int height);

    SeededRandom m_random;
    Channel m_channel;
    int m_readingsOnChannel;
    bool m_clear = false;
    int m_clearHeight = 0; // the value sent for the current clear sky
    int m_readingsOfSky;
    bool m_secondLayer = true;
    int m_readingsOfSecondLayer;
    int m_base;   // metres
    int m_target; // metres, the height towards which the base drifts
    int m_gap;    // metres between the layers
};

} // namespace ork2
