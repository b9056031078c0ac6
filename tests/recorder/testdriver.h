// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "odbcdriveralias.h"

#include <QDir>
#include <QFile>
#include <QString>

namespace ork2 {

// Lets this process and its children connect with FreeTDS instead of the driver of SQL Server. The
// folder receives the list of drivers, and must exist as long as there are connections. Returns
// false if the driver is missing or the list cannot be written.
[[nodiscard]] inline bool useTestDriver(const QDir &folder)
{
    QFile drivers(folder.filePath(QStringLiteral("odbcinst.ini")));
    if (!QFile::exists(QStringLiteral(TDS_DRIVER)) || !drivers.open(QIODevice::WriteOnly)) {
        return false;
    }
    drivers.write("[ODBC Driver 17 for SQL Server]\nDriver=" TDS_DRIVER "\n");
    drivers.close();
    qputenv("ODBCSYSINI", folder.path().toUtf8());
    qputenv("ODBCINI", folder.filePath(QStringLiteral("odbc.ini")).toUtf8());
    qputenv("FREETDSCONF", "/dev/null");
    qputenv("TDSVER", "7.4"); // the driver would otherwise try old protocols first
    registerOdbcDriverAlias();
    return true;
}

} // namespace ork2
