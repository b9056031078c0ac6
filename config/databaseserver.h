// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Where the uploader connects to, and the station in its rows. No value may contain a quote,
// a brace or a semicolon: they are inserted into the connection string or the statement unchanged.
struct DatabaseServer
{
    QString host; // "address" or "address,port"
    int port = 0;
    QString user;
    QString password;
    QString station;

    bool operator==(const DatabaseServer &) const = default;
};

// Returns the server of the settings store.
[[nodiscard]] DatabaseServer storedDatabaseServer();

} // namespace ork2
