// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

// Whether the toolkit's lock file says that a device, named by its full path, is in use.
inline bool portIsLocked(const QString &path)
{
    const QString device = path.mid(5).replace(u'/', u'_'); // behind "/dev/"
    return QFile::exists(QStringLiteral("/var/lock/LCK..") + device);
}
