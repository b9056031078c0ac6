// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scenario.h"
#include "seededrandom.h"
#include "weatherscenario.h"

namespace ork2 {

// Endless weather with error codes between the readings. Cycles through 15 blocks: each of the
// three codes in both fields, and every pair of two different codes or of a code and a height.
class ErrorsScenario : public Scenario
{
public:
    explicit ErrorsScenario(quint32 seed);

    [[nodiscard]] std::optional<Step> next() override;

private:
    WeatherScenario m_weather;
    SeededRandom m_random;
    std::size_t m_block = 0;
    int m_normalLeft;
    int m_errorsLeft = 0;
};

} // namespace ork2
