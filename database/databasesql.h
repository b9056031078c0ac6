// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "databaseserver.h"

#include <QMutex>
#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>

#include <optional>

namespace ork2 {
// Timeouts of an upload. Without them, a server that does not answer would block the thread
// forever.
inline constexpr int kLoginTimeoutSeconds = 5;  // per open; an upload opens twice
inline constexpr int kInsertTimeoutSeconds = 5; // of the INSERT statement
inline constexpr int kPauseMs = 5000;           // of process()
}

// Inserts one row into [UVIndex].[dbo].[UVI] of an SQL server over ODBC. Each object performs one
// upload in a separate thread. It connects with the current parameters of the settings store, using
// Qt's default connection name, so uploads must not overlap. The result is reported through
// logSQLData(), followed by finished(). Nothing is retried.
class databasesql : public QObject
{
    Q_OBJECT

public:
    // Connects to the server of the settings store.
    explicit databasesql(QObject *parent = nullptr);
    // Connects to this server; statements are not printed.
    explicit databasesql(const ork2::DatabaseServer &server, QObject *parent = nullptr);

    // The row to insert: date, time, device number, voltage, temperature, radiation, UV index.
    // Missing elements are treated as empty; additional ones are ignored. Call from any thread
    // before the upload starts.
    void setRowValues(const QVariantList &row);

    // For several rows over one connection: open() once, inserIntoTable() for each, then close().
    // All in the same thread. open() returns false if the server cannot be reached in time.
    [[nodiscard]] bool open() { return connectToServer(); }
    void close();
    // The driver's text of the last failure of open() or inserIntoTable().
    [[nodiscard]] QString lastError() const { return m_lastError; }

Q_SIGNALS:
    // The executed statement, "SQL connection failed!", "SQL data failed!" or "SQL bind".
    void logSQLData(QString);
    void finished();

public Q_SLOTS:
    // Tests the connection. The parameters have no effect: connecting reads the settings store.
    void ServerSettings(QString serv_addr, int portNum, QString userName, QString userPass);
    // Values are inserted into the statement without escaping quotes. Requires the connection
    // opened by serverSend() or open(). Returns false if the statement failed.
    bool inserIntoTable(QList<QVariant> data);
    void process(); // blocks the thread for kPauseMs, then emits finished()
    void serverSend();
    void makeSqlStr(QList<QVariant>);

private:
    // Tests execute the statement without a server.
    friend class DatabaseSqlProbe;

    [[nodiscard]] bool connectToServer();
    void closeConnection();
    [[nodiscard]] ork2::DatabaseServer server() const;
    [[nodiscard]] QString statement(const QVariantList &row) const;

    std::optional<ork2::DatabaseServer> m_server; // unset: that of the settings store
    QString m_lastError;
    QString m_lastQuery;
    QVariantList m_rowValues;
    QMutex m_rowLock; // protects m_rowValues
    QString m_host;
    int m_port = 0;
    QString m_userName;
    QString m_userPass;
    QString m_station; // as used in the statement, including quotes
    QSqlDatabase m_db;
};
