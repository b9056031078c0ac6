// SPDX-License-Identifier: GPL-3.0-or-later
#include "localday.h"

#include <QDateTime>

namespace ork2 {

namespace {

constexpr qint64 kDayLength = 86400;
constexpr qint64 kEpochJulianDay = 2440588; // 1970-01-01

} // namespace

LocalDay::LocalDay(QDate date, const QTimeZone &zone)
    : m_zone(zone)
    , m_wallStart((date.toJulianDay() - kEpochJulianDay) * kDayLength)
    , m_start(date.startOfDay(zone).toSecsSinceEpoch())
    , m_offset(offsetAt(m_start))
    , m_lateOffset(offsetAt(date.addDays(1).startOfDay(zone).toSecsSinceEpoch() - 1))
    , m_previous(m_start)
{ }

qint64 LocalDay::offsetAt(qint64 time) const
{
    return m_zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(time, Qt::UTC));
}

qint64 LocalDay::toUtc(int secondOfDay)
{
    const qint64 early = m_wallStart + secondOfDay - m_offset;
    qint64 time = early;
    if (m_offset != m_lateOffset) {
        const qint64 late = m_wallStart + secondOfDay - m_lateOffset;
        const bool earlyExists = offsetAt(early) == m_offset;
        const bool lateExists = offsetAt(late) == m_lateOffset;
        if (lateExists && (!earlyExists || early < m_previous)) {
            time = late;
        }
    }
    m_previous = time;
    return time;
}

} // namespace ork2
