// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QString>
#include <QStringList>

namespace ork2 {

// Returns the path of a configured port: a path is returned unchanged, a bare name is one in /dev.
[[nodiscard]] QString portPath(const QString &configured);

// Returns the device that the path leads to, so that all programs use the same lock file for it;
// the path itself if there is no device at present.
[[nodiscard]] QString portDevice(const QString &path);

// Returns the folder of the path, or the nearest parent folder that exists.
[[nodiscard]] QDir nearestFolder(const QString &path);

// Returns the folders in which something must appear for the path to lead to a device: for the path
// and each link on the way its folder, or the nearest parent folder that exists.
[[nodiscard]] QStringList foldersOnTheWay(const QString &path);

} // namespace ork2
