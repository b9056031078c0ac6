// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "scriptscenario.h"

#include <QByteArray>

namespace ork2 {

// Reads a day file of the terminal: UTF-8, two heading lines (which may be missing), then records
// of time, first layer, second layer and channel name between tabs. Each record gives one reading;
// "----" is sent as kNoValueHeight. The times are checked but not used. The error starts with
// fileName and, where one is to blame, the line's number.
[[nodiscard]] ScriptResult parseDayFile(const QByteArray &text, const QString &fileName);

} // namespace ork2
