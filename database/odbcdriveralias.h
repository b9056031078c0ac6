// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

namespace ork2 {

// Name under which the uploader asks for the toolkit's ODBC driver. The toolkit itself knows that
// driver as "QODBC" only.
inline constexpr QLatin1StringView kOdbcDriverName{"QODBC3"};

// Makes kOdbcDriverName known. Call it once, before any other thread uses SQL: the toolkit keeps
// the names without a lock. Where the ODBC plug-in is missing, connections of that name do not
// open.
void registerOdbcDriverAlias();

} // namespace ork2
