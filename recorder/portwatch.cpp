// SPDX-License-Identifier: GPL-3.0-or-later
#include "portwatch.h"

#include "portname.h"

#include <QFileInfo>

#include <utility>

namespace ork2 {

PortWatch::PortWatch(QObject *parent)
    : QObject(parent)
{
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &PortWatch::look);
}

void PortWatch::watch(const QString &path)
{
    m_path = path;
    m_device = QFileInfo(m_path).canonicalFilePath();
    watchFolders();
}

void PortWatch::look()
{
    // First watch the folders, then look, or what appears in between would be missed.
    watchFolders();
    const QString device = QFileInfo(m_path).canonicalFilePath();
    const bool isNew = !device.isEmpty() && device != m_device;
    m_device = device;
    if (isNew) {
        Q_EMIT appeared();
    }
}

void PortWatch::watchFolders()
{
    QStringList wanted;
    // A folder may be created while its parent is about to be watched.
    while (wanted != foldersOnTheWay(m_path)) {
        wanted = foldersOnTheWay(m_path);
        const QStringList watched = m_watcher.directories();
        for (const QString &folder : watched) {
            if (!wanted.contains(folder)) {
                m_watcher.removePath(folder);
            }
        }
        for (const QString &folder : std::as_const(wanted)) {
            if (!watched.contains(folder)) {
                m_watcher.addPath(folder);
            }
        }
    }
}

} // namespace ork2
