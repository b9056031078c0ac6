// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Returns the number of records in a day file; 0 if it does not exist or cannot be read.
[[nodiscard]] int recordsInDayFile(const QString &path);

} // namespace ork2
