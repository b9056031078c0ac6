// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readingframe.h"
#include "scenario.h"
#include "seededrandom.h"

namespace ork2 {

// Ordinary weather, without end: a drifting cloud base, a second layer above it that comes and
// goes, clear spells, and at times the reserve channel. Durations are counted in readings.
class WeatherScenario : public Scenario
{
public:
    explicit WeatherScenario(quint32 seed);

    [[nodiscard]] std::optional<Step> next() override;
    [[nodiscard]] Reading nextReading();

private:
    void passTime();
    void drift();
    [[nodiscard]] int measured(int height);

    SeededRandom m_random;
    Channel m_channel;
    int m_readingsOnChannel;
    bool m_clear = false;
    int m_clearHeight = 0; // how this spell's clear sky is sent
    int m_readingsOfSky;
    bool m_secondLayer = true;
    int m_readingsOfSecondLayer;
    int m_base;   // metres
    int m_target; // metres, where the base drifts to
    int m_gap;    // metres between the layers
};

} // namespace ork2
