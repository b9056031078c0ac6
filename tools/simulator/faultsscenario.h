// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scenario.h"
#include "seededrandom.h"
#include "weatherscenario.h"

namespace ork2 {

// Endless weather on a bad line. Between series of good readings, cycles through these faults: a
// reading with a lost byte, with an additional byte and with a changed byte, noise of 1 to 300
// bytes, silence, and an unplugged cable.
class FaultsScenario : public Scenario
{
public:
    // Silence and unplugging last a multiple of the period.
    FaultsScenario(quint32 seed, std::chrono::milliseconds period);

    [[nodiscard]] std::optional<Step> next() override;

private:
    enum class Fault { LostByte, AddedByte, ChangedByte, Noise, Silence, Unplugging };
    static constexpr int kFaults = 6;

    [[nodiscard]] Step makeFault(Fault fault);
    [[nodiscard]] QByteArray nextFrame();
    [[nodiscard]] char randomByte();

    WeatherScenario m_weather;
    SeededRandom m_random;
    std::chrono::milliseconds m_period;
    int m_goodLeft;
    int m_fault = 0;
};

} // namespace ork2
