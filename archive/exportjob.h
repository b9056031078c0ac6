// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "commandline.h"

namespace ork2 {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1; // the folder cannot be read or the file cannot be written
inline constexpr int kExitUsage = 2;   // wrong arguments

// Exports as requested and returns the exit code. Errors and unreadable lines are reported on the
// standard error output. Pictures require a QApplication.
[[nodiscard]] int runExport(const CommandLine &line);

} // namespace ork2
