// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scriptscenario.h"

#include <QByteArray>

namespace ork2 {

inline constexpr int kMostTimes = 1'000'000;  // of one line's xN
inline constexpr int kMostScriptBytes = 1024; // of one "bytes" line
inline constexpr std::chrono::milliseconds kLongestPause = std::chrono::hours(24);

// The format, as told to the user.
[[nodiscard]] QString scenarioFileHelp();

// Reads a scenario file's text. The error starts with fileName and, where one is to blame, the
// line's number.
[[nodiscard]] ScriptResult parseScenarioFile(const QByteArray &text, const QString &fileName);

} // namespace ork2
