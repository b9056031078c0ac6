// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace ork2 {

inline constexpr int kRequestIntervalMs = 1000; // the watchdog, which counts the seconds of silence
inline constexpr int kLostAfterSeconds = 30;    // the loss is reported in the next second

} // namespace ork2
