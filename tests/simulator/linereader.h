// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

// Opens a pseudo-terminal like a terminal program and stores the received data. Requires an event
// loop.
class LineReader : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] bool open(const QString &path);
    void close();
    // Enables or disables reading. The line stays open.
    void setReading(bool on);
    // Returns the number of unread bytes.
    [[nodiscard]] int waiting() const;
    [[nodiscard]] bool send(const QByteArray &bytes);

    QByteArray received;
    int pieces = 0; // number of reads that returned data
    int hangUps = 0;

private:
    void readData();

    ork2::FileDescriptor m_line;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
