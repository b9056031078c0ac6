// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTime>

namespace ork2 {

inline constexpr int kSaveIntervalMs = 1000;

// Returns whether a save tick at this time is the minute mark: the tick in second 0.
[[nodiscard]] bool isMinuteMark(QTime now);

// Returns the milliseconds until the next save tick: kSaveIntervalMs as long as the ticks stay at
// their position within the second. Over months, the timer drifts relative to the system clock. A
// tick close to a second boundary may fall on either side of it, so that a minute would get two
// marks or none. Ticks may be late but never early, so the target position leaves most of the
// second after it.
[[nodiscard]] int nextTickDelayMs(QTime now);

} // namespace ork2
