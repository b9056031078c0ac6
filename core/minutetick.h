// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTime>

namespace ork2 {

inline constexpr int kSaveIntervalMs = 1000;

// The save tick looks at the clock each second; the tick whose second is 0 is the minute's mark.
[[nodiscard]] bool isMinuteMark(QTime now);

// Milliseconds until the next save tick, kSaveIntervalMs while the tick keeps its place within the
// second. A tick near the turn of a second may fall on either side of it, and the clock is slewed
// against the timer over the months: some minute would then get two marks or none. A tick may be
// late, but not early, so the aim leaves most of the second behind it.
[[nodiscard]] int nextTickDelayMs(QTime now);

} // namespace ork2
