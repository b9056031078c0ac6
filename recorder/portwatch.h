// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace ork2 {

// Reports that a device name appears, for example when an adapter is plugged in. The name may be a
// link; its folder may be created together with it. Main thread. If the system cannot watch
// folders, nothing is reported.
class PortWatch : public QObject
{
    Q_OBJECT

public:
    explicit PortWatch(QObject *parent = nullptr);

    void watch(const QString &path);

Q_SIGNALS:
    void appeared();

private:
    void look();
    void watchFolders();

    QString m_path;
    QString m_device; // that the path leads to; empty if there is none
    QFileSystemWatcher m_watcher;
};

} // namespace ork2
