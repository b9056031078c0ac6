// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <QTimeZone>

class QIODevice;

namespace ork2 {

// Writes the samples with from <= time < to as CSV (RFC 4180: comma, CR LF, no quotes needed) in
// UTF-8 with a header. Columns: time (ISO 8601, local with the offset of the zone), first layer,
// second layer (metres; empty for no cloud, codes and unreadable heights), channel (empty if
// unreadable), code (7777, 8888 or 9999; two different ones separated by a space; "?" for an
// unreadable height). Returns false if the device reports an error.
[[nodiscard]] bool writeCsv(
    QIODevice &device, const History &history, qint64 from, qint64 to, const QTimeZone &zone);

} // namespace ork2
