// SPDX-License-Identifier: GPL-3.0-or-later
#include "portname.h"

#include <QFileInfo>

namespace ork2 {

QString portPath(const QString &configured)
{
    return configured.startsWith(u'/') ? configured : QStringLiteral("/dev/") + configured;
}

QString portDevice(const QString &path)
{
    const QString device = QFileInfo(path).canonicalFilePath();
    return device.isEmpty() ? path : device;
}

QDir nearestFolder(const QString &path)
{
    QDir folder = QFileInfo(path).dir();
    while (!folder.exists() && !folder.isRoot()) {
        folder.setPath(QFileInfo(folder.absolutePath()).path());
    }
    return folder;
}

QStringList foldersOnTheWay(const QString &path)
{
    constexpr int kMaxLinks = 8; // links may form a circle
    QStringList folders;
    QString place = path;
    for (int link = 0; link < kMaxLinks; ++link) {
        const QString folder = nearestFolder(place).absolutePath();
        if (!folders.contains(folder)) {
            folders << folder;
        }
        const QFileInfo info(place);
        if (!info.isSymLink()) {
            break;
        }
        place = info.symLinkTarget();
    }
    return folders;
}

} // namespace ork2
