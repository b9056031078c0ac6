// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace ork2 {

// Converts SIGINT and SIGTERM to terminate() and SIGHUP to reload(). Create in the main thread
// before any other thread: a thread started earlier would receive the signals instead. Only one
// object per process.
class RecorderSignals : public QObject
{
    Q_OBJECT

public:
    explicit RecorderSignals(QObject *parent = nullptr);
    ~RecorderSignals() override;
    Q_DISABLE_COPY_MOVE(RecorderSignals)

Q_SIGNALS:
    void terminate();
    void reload();

private:
    void read();

    int m_descriptor = -1;
};

} // namespace ork2
