// SPDX-License-Identifier: GPL-3.0-or-later
#include "history.h"

#include <cstdlib>
#include <numeric>

namespace ork2 {

namespace {

bool isEarlier(const DayPointer &day, QDate date)
{
    return day->date < date;
}

} // namespace

void History::set(DayPointer day)
{
    const auto place = std::lower_bound(m_days.begin(), m_days.end(), day->date, isEarlier);
    if (place != m_days.end() && (*place)->date == day->date) {
        *place = std::move(day);
    } else {
        m_days.insert(place, std::move(day));
    }
}

DayPointer History::day(QDate date) const
{
    const auto place = std::lower_bound(m_days.begin(), m_days.end(), date, isEarlier);
    return place != m_days.end() && (*place)->date == date ? *place : nullptr;
}

qint64 History::problemCount() const
{
    return std::accumulate(m_days.begin(), m_days.end(), qint64(0),
        [](qint64 sum, const DayPointer &day) { return sum + day->problemCount; });
}

const Sample *History::nearest(qint64 time) const
{
    const Sample *found = nullptr;
    const auto consider = [&](const Sample &sample) {
        if (found == nullptr || std::abs(sample.time - time) < std::abs(found->time - time)) {
            found = &sample;
        }
    };
    for (const DayPointer &day : m_days) {
        if (day->samples.empty()) {
            continue;
        }
        const auto next = std::lower_bound(day->samples.begin(), day->samples.end(), time,
            [](const Sample &sample, qint64 value) { return sample.time < value; });
        if (next != day->samples.end()) {
            consider(*next);
        }
        if (next != day->samples.begin()) {
            consider(*std::prev(next));
        }
    }
    return found;
}

} // namespace ork2
