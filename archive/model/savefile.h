// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

class QIODevice;

namespace ork2 {

// Writes a file completely or not at all; an existing one is replaced only then. write returns
// false after an error. Returns an error message of the system, empty if the file was written.
[[nodiscard]] QString saveFile(
    const QString &fileName, const std::function<bool(QIODevice &)> &write);

} // namespace ork2
