// SPDX-License-Identifier: GPL-3.0-or-later
#include "minutetick.h"

namespace ork2 {

bool isMinuteMark(QTime now)
{
    return now.second() == 0;
}

int nextTickDelayMs(QTime now)
{
    constexpr int kAim = 300;
    constexpr int kTolerance = 200;
    const int off = now.msec() - kAim;
    return qAbs(off) <= kTolerance ? kSaveIntervalMs : kSaveIntervalMs - off;
}

} // namespace ork2
