// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scriptscenario.h"

#include <QByteArray>

namespace ork2 {

// Parses a day file of the terminal: UTF-8, two optional heading lines, then records of time, first
// layer, second layer and channel name, separated by tabs. Each record becomes one reading; "----"
// is sent as kNoValueHeight. The times are checked but not used. An error starts with fileName,
// followed by the number of the line that caused it, if any.
[[nodiscard]] ScriptResult parseDayFile(const QByteArray &text, const QString &fileName);

} // namespace ork2
