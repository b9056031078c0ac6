// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace ork2 {

// Returns the seconds to wait before the next attempt to open a lost port, after this number of
// failed attempts: 1, 2, 5, 10, then always 10.
[[nodiscard]] int retryDelaySeconds(int failedAttempts);

} // namespace ork2
