// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <QTimeZone>

#include <atomic>

namespace ork2 {

// More lines in one file are counted as problems. A terminal writes 1440.
inline constexpr std::size_t kMaxDaySamples = 200000;

// Reads a day file; may be called in any thread. Never fails: a file that cannot be opened, or that
// disappears or is truncated while it is read, gives the lines read so far and a problem. If cancel
// becomes true, the rest of the file is not read.
[[nodiscard]] DayPointer readDay(const QString &path, QDate date, int unit, const QTimeZone &zone,
    const std::atomic<bool> *cancel = nullptr);

// The same for the contents of a file.
[[nodiscard]] Day parseDay(QByteArrayView text, QDate date, int unit, const QTimeZone &zone);

} // namespace ork2
