// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// The server side of uploads: tdsresponder.py in a process of its own, on a loopback port that the
// system chooses. Ends with the object. A server that does not start fails the test.
class TdsResponder
{
public:
    explicit TdsResponder(const QString &mode = QStringLiteral("ok"), const QString &user = {},
        const QString &password = {});
    ~TdsResponder();
    Q_DISABLE_COPY_MOVE(TdsResponder)

    [[nodiscard]] QByteArray port() const { return m_port; }
    void setMode(const QString &mode);

    // What it has told up to now: "connected", "login [...]", "inserted", "gone", ...
    [[nodiscard]] QByteArrayList events();
    [[nodiscard]] qsizetype count(const QByteArray &event);
    // The rows in its table, as JSON arrays, oldest first.
    [[nodiscard]] QByteArrayList rows() const;

private:
    [[nodiscard]] bool waitFor(const QByteArray &event);

    QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_port;
};
