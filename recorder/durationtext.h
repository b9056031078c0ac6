// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Returns a duration in Russian with its two largest units: "45 с", "2 мин 5 с", "3 ч 12 мин",
// "2 сут 4 ч". Negative durations, after the clock was set back, are "0 с".
[[nodiscard]] QString durationText(qint64 seconds);

} // namespace ork2
