// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scenario.h"
#include "seededrandom.h"
#include "weatherscenario.h"

namespace ork2 {

// Weather on a bad line, without end: between runs of good readings come, in turn, a reading with
// a byte lost, one with a byte added, one with a byte changed, noise of 1 to 300 bytes, silence,
// and the cable pulled.
class FaultsScenario : public Scenario
{
public:
    // Silence and pulled cable last a number of periods, so that they stay in proportion.
    FaultsScenario(quint32 seed, std::chrono::milliseconds period);

    [[nodiscard]] std::optional<Step> next() override;

private:
    enum class Fault { LostByte, AddedByte, ChangedByte, Noise, Silence, Unplugging };
    static constexpr int kFaults = 6;

    [[nodiscard]] Step faulty(Fault fault);
    [[nodiscard]] QByteArray nextFrame();
    [[nodiscard]] char randomByte();

    WeatherScenario m_weather;
    SeededRandom m_random;
    std::chrono::milliseconds m_period;
    int m_goodLeft;
    int m_fault = 0;
};

} // namespace ork2
