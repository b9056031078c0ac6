// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "filedescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace ork2 {

// The instrument's side of a serial line: a pseudo-terminal whose other side a reader opens as a
// port. The other side is in raw mode and is also kept open by this class, so that it keeps its
// settings and the data written while there is no reader (but see readerPresent()). Not
// thread-safe.
class PseudoTerminal
{
public:
    PseudoTerminal() = default;
    Q_DISABLE_COPY_MOVE(PseudoTerminal)
    ~PseudoTerminal() = default;

    // Closes an open pseudo-terminal first. Returns false on failure; errorString() then contains
    // the function that failed and the reason.
    [[nodiscard]] bool open();
    // Readers detect a hang-up; unread data is lost.
    void close();
    [[nodiscard]] bool isOpen() const { return m_master.isValid(); }

    // The path for the reader, for example "/dev/pts/3"; empty while closed.
    [[nodiscard]] QString path() const { return m_path; }
    [[nodiscard]] QString errorString() const { return m_errorString; }

    // Does not block. Returns the number of bytes written, which is smaller than the size if the
    // line's buffer is full, or -1 on failure, see errorString().
    [[nodiscard]] qsizetype write(QByteArrayView bytes);
    // Returns all data sent by the reader since the last call.
    QByteArray drain();

    // Returns the number of bytes available to the reader, at most 4095. Newly written bytes are
    // counted with a delay.
    [[nodiscard]] qsizetype unread() const;

    // Returns whether a reader has path() open. If not, discards all unread data. If so, closes
    // this class's descriptor of that side, so that descriptor() becomes readable when the reader
    // closes the port; call this function again then.
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
