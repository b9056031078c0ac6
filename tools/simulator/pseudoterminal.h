// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace ork2 {

// The instrument's end of a line: a pseudo-terminal whose other side a reader opens as its port.
// That side is raw and is held open here too, so that it keeps its settings and what was written
// while no reader is there (but see readerPresent()). Any one thread.
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    Q_DISABLE_COPY_MOVE(PseudoTerminal)
    ~PseudoTerminal() = default;

    // False: nothing is open and errorString() tells which call failed and why. An open
    // pseudo-terminal is closed first.
    [[nodiscard]] bool open();
    // Readers see a cable being pulled: what they had not read is lost.
    void close();
    [[nodiscard]] bool isOpen() const { return m_master.isValid(); }

    // What a reader opens, e.g. "/dev/pts/3"; empty while closed.
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString errorString() const { return m_errorString; }

    // Never waits. The number of bytes taken, fewer than given when the line is full; -1: failed,
    // see errorString().
    [[nodiscard]] qsizetype write(QByteArrayView bytes);
    // Everything the reader has sent since the last call.
    QByteArray drain();

    // Bytes that lie ready for the reader, at most 4095; just written ones count a moment later.
    [[nodiscard]] qsizetype unread() const;

    // Whether somebody has path() open. If nobody has, everything unread is discarded. While
    // somebody has, the own hold on that side is given up: his leaving makes descriptor() readable,
    // and whoever watches that must call this again.
    [[nodiscard]] bool readerPresent();

    // For socket notifiers; -1 while closed.
    [[nodiscard]] int descriptor() const { return m_master.get(); }

private:
    [[nodiscard]] FileDescriptor openSlave() const;
    [[nodiscard]] bool failed(const char *call);

    FileDescriptor m_master;
    FileDescriptor m_slave;
    QString m_path;
    QString m_errorString;
};

} // namespace ork2
