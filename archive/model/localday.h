// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QTimeZone>

namespace ork2 {

// Converts the local times of a day file, in the order of its lines, to UTC. An hour that occurs
// twice at the end of summer time is resolved by this order: a line that would go back in time
// belongs to the second occurrence. A time skipped at the start of summer time is converted with
// the offset before the change.
class LocalDay
{
public:
    LocalDay(QDate date, const QTimeZone &zone);

    [[nodiscard]] qint64 start() const { return m_start; } // seconds since the epoch
    // Seconds since the epoch; secondOfDay is 0 to 86399.
    [[nodiscard]] qint64 toUtc(int secondOfDay);

private:
    [[nodiscard]] qint64 offsetAt(qint64 time) const;

    QTimeZone m_zone;
    qint64 m_wallStart; // as if local time were UTC
    qint64 m_start;
    qint64 m_offset;     // at the start of the day, seconds east of UTC
    qint64 m_lateOffset; // at its end
    qint64 m_previous;
};

} // namespace ork2
