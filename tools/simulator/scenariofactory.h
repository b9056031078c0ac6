// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "options.h"
#include "scenario.h"

#include <memory>

namespace ork2 {

struct ScenarioResult
{
    std::unique_ptr<Scenario> scenario; // none: see error
    QString error;
};

// What the options ask to be played. Reads the scenario file or the day file, whole.
[[nodiscard]] ScenarioResult makeScenario(const Options &options);

} // namespace ork2
