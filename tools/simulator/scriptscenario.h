// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scenario.h"

#include <QString>

#include <vector>

namespace ork2 {

struct ScriptStep
{
    Step step;
    int times = 1;
};

// A fixed sequence of steps.
struct Script
{
    std::vector<ScriptStep> steps;
    bool repeats = false; // from the first step, forever
};

// The result of parsing a file: a script or an error.
struct ScriptResult
{
    Script script;
    QString error; // empty if the script is valid; otherwise a message for the user
};

class ScriptScenario : public Scenario
{
public:
    explicit ScriptScenario(Script script);

    [[nodiscard]] std::optional<Step> next() override;

private:
    Script m_script;
    std::size_t m_at = 0;
    int m_timesPlayed = 0;
};

} // namespace ork2
