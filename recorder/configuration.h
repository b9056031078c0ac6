// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "databaseserver.h"
#include "datafolder.h"

#include <QString>

#include <optional>

namespace ork2 {

inline constexpr QStringView kTerminalFolder = u"/opt/ork2-terminal";
inline constexpr QStringView kServiceFolder = u"/var/lib/ork2";
inline constexpr QStringView kDefaultConfigurationFile = u"/etc/ork2-recorder.conf";

// What the recorder does; read from its configuration file.
struct Configuration
{
    QString port; // path
    RecordingPlace place;
    bool upload = false;
    DatabaseServer server; // only if upload is set

    bool operator==(const Configuration &) const = default;
};

struct ConfigurationResult
{
    std::optional<Configuration> configuration;
    QString error; // if there is no configuration: file, key and what is allowed, in Russian
};

// Reads a configuration file (UTF-8). A wrong value, an unknown key and a key given twice are
// errors: a misspelt key must not be ignored for months.
[[nodiscard]] ConfigurationResult readConfiguration(const QString &path);

// Returns the folder that contains "Data/" if the configuration names none: that of the terminal if
// it is installed, so that both programs continue the same files, otherwise the service's own.
[[nodiscard]] QString automaticFolder(const QString &terminalFolder);

// Returns the file of the rows that wait for the upload: in the state folder that the service
// manager names, or beside the day files.
[[nodiscard]] QString uploadStorePath(const Configuration &configuration);

} // namespace ork2
