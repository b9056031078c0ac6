// SPDX-License-Identifier: GPL-3.0-or-later
#include "portname.h"

#include <QDir>
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

QStringList foldersOnTheWay(const QString &path)
{
    constexpr int kMaxLinks = 8; // links may form a circle
    QStringList folders;
    QString place = path;
    for (int link = 0; link < kMaxLinks; ++link) {
        QDir folder = QFileInfo(place).dir();
        while (!folder.exists() && !folder.isRoot()) {
            folder.setPath(QFileInfo(folder.absolutePath()).path());
        }
        if (!folders.contains(folder.absolutePath())) {
            folders << folder.absolutePath();
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
