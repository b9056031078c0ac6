// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Messages of the service on the standard error output: for the system's journal, each line begins
// with its priority ("<3>", see sd-daemon(3)); otherwise with the time. Call from any thread.
namespace ork2::journal {

enum class Priority { Error = 3, Warning = 4, Notice = 5, Info = 6 }; // as in syslog(3)

// Call once, before the first message. Also passes warnings of Qt to the journal, and drops the
// debug log, which has several lines for each reading, unless QT_LOGGING_RULES enables it.
void install();

// Line breaks in the text become spaces.
void write(Priority priority, const QString &text);

} // namespace ork2::journal
