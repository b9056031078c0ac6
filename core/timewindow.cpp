// SPDX-License-Identifier: GPL-3.0-or-later
#include "timewindow.h"

namespace ork2 {

TimeWindow firstTimeWindow()
{
    return {kTenMinutes, QStringLiteral("Высота нижней границы облачности (10 минут)")};
}

std::optional<TimeWindow> nextTimeWindow(int seconds)
{
    switch (seconds) {
    case kTenMinutes:
        return TimeWindow{kOneHour, QStringLiteral("Высота нижней границы облачности (1 час)")};
    case kOneHour:
        return TimeWindow{kThreeHours, QStringLiteral("Высота нижней границы облачности (3 часа)")};
    case kThreeHours:
        return firstTimeWindow();
    default:
        return std::nullopt;
    }
}

} // namespace ork2
