// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ceilingwatch.h"

#include <QString>

namespace ork2 {

struct JournalEntry
{
    QDateTime time; // local, with the offset at the time of the event
    int unit = 0;
    WatchEvent event;
};

// The events of the watch, in a text file (UTF-8) with one line for each: time (ISO 8601 with
// offset), unit, kind, threshold, height, separated by tabs. Outside the data folder.
class EventJournal
{
public:
    explicit EventJournal(QString path);

    // Creates the file and its folder if necessary, and flushes the line to the system. Returns an
    // error message for the user, empty if the event was stored.
    [[nodiscard]] QString append(int unit, const WatchEvent &event) const;
    // The last entries, newest first. Damaged lines are omitted.
    [[nodiscard]] QList<JournalEntry> last(qsizetype count) const;
    [[nodiscard]] const QString &path() const { return m_path; }

private:
    QString m_path;
};

// The event as a Russian sentence without its time.
[[nodiscard]] QString eventText(const WatchEvent &event);

} // namespace ork2
