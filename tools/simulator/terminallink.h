// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// A symbolic link that gives the pseudo-terminal a permanent name. The destructor removes the link,
// unless it has been changed to another target.
class TerminalLink
{
public:
    explicit TerminalLink(QString path);
    Q_DISABLE_COPY_MOVE(TerminalLink)
    ~TerminalLink();

    // Creates or atomically replaces the link. Returns false and sets errorString() if the path
    // exists and is not a link, or if the system reports an error.
    [[nodiscard]] bool pointTo(const QString &target);
    void remove();
    [[nodiscard]] QString errorString() const { return m_errorString; }

private:
    QString m_path;
    QString m_target;
    QString m_errorString;
};

} // namespace ork2
