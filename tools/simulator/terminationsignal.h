// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QObject>

namespace ork2 {

// Converts SIGINT and SIGTERM to a Qt signal. Create only one object per process.
class TerminationSignal : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignal(QObject *parent = nullptr);
    Q_DISABLE_COPY_MOVE(TerminationSignal)
    ~TerminationSignal() override;

    // Returns false if no pipe could be created; the signals then terminate the process as usual.
    [[nodiscard]] bool isInstalled() const { return m_readEnd.isValid(); }

Q_SIGNALS:
    void received();

private:
    FileDescriptor m_readEnd;
    FileDescriptor m_writeEnd;
};

} // namespace ork2
