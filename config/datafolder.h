// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Both follow the stored data folder: text that begins with '!' is the program's own folder, any
// other one a folder. Absolute or as stored; nothing is created.

// Where the day files of an instrument lie, with a slash at its end.
[[nodiscard]] QString dayFileFolder(int unitNumber);

// What the command "Открыть папку с данными" opens. For a folder of one's own that is "ORK2/Data/"
// in it and not the "Data/" that the day files go to, intentional: both take the text as it stands.
[[nodiscard]] QString openedDataFolder();

} // namespace ork2
