// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// A symbolic link that gives the pseudo-terminal a lasting name. Removed with the object, unless
// somebody has pointed it elsewhere meanwhile.
class TerminalLink
{
public:
    explicit TerminalLink(QString path);
    Q_DISABLE_COPY_MOVE(TerminalLink)
    ~TerminalLink();

    // Makes or replaces the link in one step: there is no moment without it. False, with
    // errorString(): the path holds something that is no link, or the system refuses.
    [[nodiscard]] bool pointTo(const QString &target);
    void remove();
    [[nodiscard]] QString errorString() const { return m_errorString; }

private:
    QString m_path;
    QString m_target;
    QString m_errorString;
};

} // namespace ork2
