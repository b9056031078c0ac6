// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

// Returns whether Qt's lock file of the device exists. The path must be absolute.
inline bool portIsLocked(const QString &path)
{
    const QString device = path.mid(5).replace(u'/', u'_'); // after "/dev/"
    return QFile::exists(QStringLiteral("/var/lock/LCK..") + device);
}
