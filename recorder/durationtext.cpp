// SPDX-License-Identifier: GPL-3.0-or-later
#include "durationtext.h"

namespace ork2 {

QString durationText(qint64 seconds)
{
    constexpr qint64 kMinute = 60;
    constexpr qint64 kHour = 60 * kMinute;
    constexpr qint64 kDay = 24 * kHour;
    if (seconds < kMinute) {
        return QStringLiteral("%1 с").arg(qMax<qint64>(seconds, 0));
    }
    if (seconds < kHour) {
        return QStringLiteral("%1 мин %2 с").arg(seconds / kMinute).arg(seconds % kMinute);
    }
    if (seconds < kDay) {
        return QStringLiteral("%1 ч %2 мин").arg(seconds / kHour).arg(seconds % kHour / kMinute);
    }
    return QStringLiteral("%1 сут %2 ч").arg(seconds / kDay).arg(seconds % kDay / kHour);
}

} // namespace ork2
