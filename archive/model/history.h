// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dayfileparser.h"

#include <QDate>
#include <QDateTime>
#include <QString>

#include <algorithm>
#include <memory>
#include <vector>

namespace ork2 {

inline constexpr qint64 kSecondsPerMinute = 60;
inline constexpr qint64 kSecondsPerDay = 86400;

// One line of a day file.
struct Sample
{
    qint64 time = 0; // seconds since the epoch, UTC
    LayerValue first;
    LayerValue second;
    RecordChannel channel = RecordChannel::Unknown;

    [[nodiscard]] qint64 minute() const { return time / kSecondsPerMinute; }
};

// Something in a day file that cannot be read, or that is shown although it is doubtful.
struct DayProblem
{
    qint64 line = 0; // 0: the complete file
    QString text;    // for the user
};

// The contents of a day file.
struct Day
{
    QDate date;
    QString path;
    qint64 size = -1; // bytes read; -1: the file cannot be read
    QDateTime modified;
    std::vector<Sample> samples;      // in the order of their times
    std::vector<DayProblem> problems; // the first kMaxListedProblems
    qint64 problemCount = 0;

    [[nodiscard]] bool isRead() const { return size >= 0; }
};

inline constexpr qint64 kMaxListedProblems = 1000; // for each file

using DayPointer = std::shared_ptr<const Day>;

// The loaded days of an instrument in the order of their dates. Copies share the days, so that a
// copy may be passed to another thread.
class History
{
public:
    // Inserts the day, or replaces the day with the same date.
    void set(DayPointer day);
    [[nodiscard]] const std::vector<DayPointer> &days() const { return m_days; }
    [[nodiscard]] DayPointer day(QDate date) const; // null if it is not loaded
    [[nodiscard]] qint64 problemCount() const;
    // The sample whose time is nearest to the given one, null if there is none.
    [[nodiscard]] const Sample *nearest(qint64 time) const;

    // Calls function(sample) for all samples with from <= time < to, in the order of their times.
    template <typename Function> void forEach(qint64 from, qint64 to, Function function) const
    {
        const auto before = [](const Sample &sample, qint64 time) { return sample.time < time; };
        for (const DayPointer &day : m_days) {
            const auto &samples = day->samples;
            if (samples.empty() || samples.back().time < from || samples.front().time >= to) {
                continue;
            }
            auto it = samples.front().time >= from
                ? samples.begin()
                : std::lower_bound(samples.begin(), samples.end(), from, before);
            for (; it != samples.end() && it->time < to; ++it) {
                function(*it);
            }
        }
    }

    // As forEach(), but of several samples in a minute only the last one.
    template <typename Function> void forEachMinute(qint64 from, qint64 to, Function function) const
    {
        const Sample *previous = nullptr;
        forEach(from, to, [&](const Sample &sample) {
            if (previous != nullptr && previous->minute() != sample.minute()) {
                function(*previous);
            }
            previous = &sample;
        });
        if (previous != nullptr) {
            function(*previous);
        }
    }

private:
    std::vector<DayPointer> m_days;
};

} // namespace ork2
