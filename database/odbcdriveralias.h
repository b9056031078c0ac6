// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1StringView>

namespace ork2 {

// The name by which the uploader requests Qt's ODBC driver, which Qt registers as "QODBC" only.
inline constexpr QLatin1StringView kOdbcDriverName{"QODBC3"};

// Registers kOdbcDriverName. Call once, before any other thread uses SQL: Qt does not protect its
// list of drivers with a lock. Without the ODBC plugin, connections with this name do not open.
void registerOdbcDriverAlias();

} // namespace ork2
