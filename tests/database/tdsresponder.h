// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayList>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

// The database server for upload tests: runs tdsresponder.py in a separate process on a free
// loopback port. The destructor ends the process. If the server does not start, the test fails.
class TdsResponder
{
public:
    explicit TdsResponder(const QString &mode = QStringLiteral("ok"), const QString &user = {},
        const QString &password = {});
    ~TdsResponder();
    Q_DISABLE_COPY_MOVE(TdsResponder)

    [[nodiscard]] QByteArray port() const { return m_port; }
    void setMode(const QString &mode);

    // The events reported so far: "connected", "login [...]", "inserted", "gone", ...
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
