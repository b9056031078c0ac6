// SPDX-License-Identifier: GPL-3.0-or-later
#include "minutetick.h"

namespace ork2 {

bool isMinuteMark(QTime now)
{
    return now.second() == 0;
}

int nextTickDelayMs(QTime now)
{
    constexpr int kTarget = 300;
    constexpr int kTolerance = 200;
    const int offset = now.msec() - kTarget;
    return qAbs(offset) <= kTolerance ? kSaveIntervalMs : kSaveIntervalMs - offset;
}

} // namespace ork2
