// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scriptscenario.h"

#include <QByteArray>

namespace ork2 {

inline constexpr int kMaxRepetitions = 1'000'000; // N of "xN" in a line
inline constexpr int kMaxScriptBytes = 1024;      // in a "bytes" line
inline constexpr std::chrono::milliseconds kMaxPause = std::chrono::hours(24);

// Returns the description of the format for the user.
[[nodiscard]] QString scenarioFileHelp();

// Parses the text of a scenario file. An error starts with fileName, followed by the number of the
// line that caused it, if any.
[[nodiscard]] ScriptResult parseScenarioFile(const QByteArray &text, const QString &fileName);

} // namespace ork2
