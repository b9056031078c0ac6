// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "options.h"
#include "scenario.h"

#include <memory>

namespace ork2 {

struct ScenarioResult
{
    std::unique_ptr<Scenario> scenario; // null: see error
    QString error;
};

// Creates the scenario selected by the options. Reads the entire scenario file or day file.
[[nodiscard]] ScenarioResult makeScenario(const Options &options);

} // namespace ork2
