// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QObject>

namespace ork2 {

// Turns SIGINT and SIGTERM into a Qt signal of the event loop. One object per process.
class TerminationSignal : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignal(QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(TerminationSignal)
    ~TerminationSignal() override;

    // False: the system gave no pipe, and the two signals end the process at once as ever.
    [[nodiscard]] bool isInstalled() const { return m_readEnd.isValid(); }

Q_SIGNALS:
    void received();

private:
    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
};

} // namespace ork2
