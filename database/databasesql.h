// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>

namespace ork2 {
// What bounds one upload. Without them a silent server would hold the thread for ever.
inline constexpr int kLoginTimeoutSeconds = 5;  // each opening; an upload opens twice
inline constexpr int kInsertTimeoutSeconds = 5; // until the statement is given up
inline constexpr int kPauseMs = 5000;           // of process()
}

// Inserts one row into [UVIndex].[dbo].[UVI] of an SQL server over ODBC. One object serves one
// upload in a thread of its own; it connects afresh, with the parameters that the settings store
// then holds, on the toolkit's default connection name, so no two uploads may overlap.
// Every outcome is told by logSQLData, then finished() follows; nothing is tried again.
class databasesql : public QObject
{
    Q_OBJECT

public:
    explicit databasesql(QObject *parent = nullptr);

    // The row to insert: date, time, device number, voltage, temperature, radiation, UV index.
    // Missing elements count as empty, further ones are ignored. Any thread, before the upload
    // starts.
    void setRowValues(const QVariantList &row);

Q_SIGNALS:
    // The statement for a row inserted, "SQL connection failed!", "SQL data failed!" or "SQL bind".
    void logSQLData(QString);
    void finished();

public Q_SLOTS:
    // Tests a connection. What it stores never takes effect: connecting reads the settings anew.
    void ServerSettings(QString serv_addr, int portNum, QString userName, QString userPass);
    // Values stand in the statement's text as they are, quotes in them unescaped. Needs the
    // connection that serverSend() opens. False: the statement failed.
    bool inserIntoTable(QList<QVariant> data);
    void process(); // blocks its thread for kPauseMs, then finished()
    void serverSend();
    void makeSqlStr(QList<QVariant>);

private:
    // Tests run the statement without a server.
    friend class DatabaseSqlProbe;

    [[nodiscard]] bool connectToServer();
    void closeConnection();
    [[nodiscard]] QString statement(const QVariantList &row) const;

    QString m_lastQuery;
    QVariantList m_rowValues;
    QMutex m_rowLock; // guards m_rowValues during the hand-over
    QString m_host;
    int m_port = 0;
    QString m_userName;
    QString m_userPass;
    QString m_station; // as it stands in the statement, quotes included
    QSqlDatabase m_db;
};
