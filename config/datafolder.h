// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Where the day files of an instrument are written.
struct RecordingPlace
{
    QString base; // the folder that contains "Data/", absolute
    int unitNumber = 0;

    bool operator==(const RecordingPlace &) const = default;
};

// Returns the folder of an instrument's day files, with a trailing slash.
[[nodiscard]] QString dayFileFolder(const RecordingPlace &place);

// The following functions use the stored data folder. A value that begins with '!' is the program
// folder; any other value is a path, which may be relative. No folder is created.

// Returns the folder of an instrument's day files, with a trailing slash.
[[nodiscard]] QString dayFileFolder(int unitNumber);

// Returns the folder opened by the command "Открыть папку с данными". If a path is stored, this is
// its "ORK2/Data/" and not the "Data/" that contains the day files. Intentional: both functions
// append to the stored text unchanged.
[[nodiscard]] QString openedDataFolder();

} // namespace ork2
