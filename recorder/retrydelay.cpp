// SPDX-License-Identifier: GPL-3.0-or-later
#include "retrydelay.h"

#include <algorithm>
#include <array>

namespace ork2 {

int retryDelaySeconds(int failedAttempts)
{
    constexpr std::array kDelays{1, 2, 5, 10};
    const int last = static_cast<int>(kDelays.size()) - 1;
    return kDelays.at(static_cast<std::size_t>(std::clamp(failedAttempts, 0, last)));
}

} // namespace ork2
