// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>

// Opens a pseudo-terminal as a terminal program does and gathers what comes, through the event
// loop.
class LineReader : public QObject
{
    Q_OBJECT

public:
    [[nodiscard]] bool open(const QString &path);
    void close();
    // Whether bytes are taken; the line stays open meanwhile.
    void setReading(bool on);
    // Bytes that lie ready and are not taken yet.
    [[nodiscard]] int waiting() const;
    [[nodiscard]] bool send(const QByteArray &bytes);

    QByteArray received;
    int pieces = 0; // number of reads that gave something
    int hangUps = 0;

private:
    void take();

    ork2::FileDescriptor m_line;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
