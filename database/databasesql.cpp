// SPDX-License-Identifier: GPL-3.0-or-later
#include "databasesql.h"

#include "odbcdriveralias.h"

#include <QDebug>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlResult>
#include <QTextStream>
#include <QThread>

#ifdef Q_OS_WIN
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

namespace {

// The elements of a row. The station is not among them; it is read from the settings store.
enum Element { Date, Time, Device, Voltage, Temperature, Radiation, UvIndex };

const QString kTemplate = QStringLiteral(
    "INSERT [UVIndex].[dbo].[UVI] ([Date], [Time], [Station], [Dev_id], [Voltage], [Temperature], "
    "[Radiation], [UVIndex]) VALUES ('%1', '%2', %3, %4, %5, %6, %7, %8)");
const QString kConnection =
    QStringLiteral("DRIVER={ODBC Driver 17 for SQL Server}; DATABASE=UVIndex; SERVER=");

QString threeDecimals(const QVariant &value)
{
    return QString::number(static_cast<double>(value.toFloat()), 'f', 3);
}

// Qt has no option for the statement timeout. It applies to one statement: call after prepare().
void setStatementTimeout(const QSqlQuery &query)
{
    const QVariant handle = query.result()->handle();
    if (handle.metaType() == QMetaType::fromType<SQLHANDLE>()) {
        const auto seconds = static_cast<quintptr>(ork2::kInsertTimeoutSeconds);
        // ODBC passes numbers in a pointer argument.
        auto *value = reinterpret_cast<SQLPOINTER>(seconds); // NOLINT(performance-no-int-to-ptr)
        SQLSetStmtAttr(handle.value<SQLHANDLE>(), SQL_ATTR_QUERY_TIMEOUT, value, SQL_IS_UINTEGER);
    }
}

template <typename Value> void logArgument(const Value &value)
{
    qDebug() << "It's work!!! The num is" << value;
}

} // namespace

databasesql::databasesql(QObject *parent)
    : QObject(parent)
{ }

databasesql::databasesql(const ork2::DatabaseServer &server, QObject *parent)
    : QObject(parent)
    , m_server(server)
{ }

ork2::DatabaseServer databasesql::server() const
{
    return m_server ? *m_server : ork2::storedDatabaseServer();
}

void databasesql::setRowValues(const QVariantList &row)
{
    const QMutexLocker lock(&m_rowLock);
    m_rowValues = row;
}

void databasesql::makeSqlStr(QList<QVariant> row)
{
    setRowValues(row);
}

void databasesql::serverSend()
{
    if (connectToServer()) {
        inserIntoTable(m_rowValues);
        closeConnection();
    } else {
        closeConnection();
        Q_EMIT logSQLData(QStringLiteral("SQL connection failed!"));
    }
    Q_EMIT finished();
}

void databasesql::ServerSettings(QString serv_addr, int portNum, QString userName, QString userPass)
{
    if (!serv_addr.isEmpty()) {
        logArgument(serv_addr);
        m_host = serv_addr;
    }
    if (portNum != 0) {
        logArgument(portNum);
        m_port = portNum;
    }
    if (!userName.isEmpty()) {
        logArgument(userName);
        m_userName = userName;
    }
    if (!userPass.isEmpty()) {
        logArgument(userPass);
        m_userPass = userPass;
    }
    if (connectToServer()) {
        Q_EMIT logSQLData(QStringLiteral("SQL bind"));
        closeConnection();
    }
}

bool databasesql::connectToServer()
{
    const ork2::DatabaseServer server = this->server();
    m_host = server.host;
    m_port = server.port;
    m_userName = server.user;
    m_userPass = server.password;

    m_db = QSqlDatabase::addDatabase(ork2::kOdbcDriverName);
    m_db.setHostName(m_host);
    m_db.setPort(m_port);
    m_db.setDatabaseName(kConnection + m_host);
    m_db.setUserName(m_userName);
    m_db.setPassword(m_userPass);
    m_db.setConnectOptions(
        QStringLiteral("SQL_ATTR_LOGIN_TIMEOUT=%1").arg(ork2::kLoginTimeoutSeconds));
    qDebug() << QSqlDatabase::drivers();
    if (!m_db.open()) {
        qDebug() << "Connection failed";
        m_lastError = m_db.lastError().text();
        m_db.close();
        return false;
    }
    qDebug() << "Connection is ok";
    return true;
}

bool databasesql::inserIntoTable(QList<QVariant> data)
{
    m_station = u'\'' + server().station + u'\'';
    QSqlQuery query(m_db);
    query.prepare(statement(data));
    setStatementTimeout(query);
    m_lastQuery = query.executedQuery();
    qDebug() << "SQL bind" << m_lastQuery;
    if (!m_server) {
        QTextStream(stdout) << m_lastQuery << Qt::endl;
    }
    const bool inserted = query.exec();
    if (inserted) {
        Q_EMIT logSQLData(m_lastQuery);
    } else {
        m_lastError = query.lastError().text();
        qDebug() << "error insert into"
                 << "[UVIndex].[dbo].[UVI]";
        Q_EMIT logSQLData(QStringLiteral("SQL data failed!"));
    }
    return inserted;
}

QString databasesql::statement(const QVariantList &row) const
{
    // A single arg() call, so that "%1" in a value is not treated as a place marker.
    return kTemplate.arg(row.value(Date).toString(),
        row.value(Time).toString() + QStringLiteral(".000"), m_station,
        QString::number(row.value(Device).toInt()), threeDecimals(row.value(Voltage)),
        threeDecimals(row.value(Temperature)), threeDecimals(row.value(Radiation)),
        threeDecimals(row.value(UvIndex)));
}

void databasesql::closeConnection()
{
    m_db.close();
    // QSqlDatabase::database() opens the connection again if it can. removeDatabase() closes it,
    // with a warning from Qt because m_db still refers to the connection.
    const QString name = QSqlDatabase::database().connectionName();
    qDebug() << "BeforeDelete" << name;
    QSqlDatabase::removeDatabase(name);
    qDebug() << "AfterDelete" << QSqlDatabase::connectionNames();
    qDebug() << "SQL closed";
}

void databasesql::close()
{
    const QString name = m_db.connectionName();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

void databasesql::process()
{
    qDebug() << "Go to sleep sqlThread...";
    QThread::msleep(ork2::kPauseMs);
    qDebug() << "Wake up sqlThread!!!";
    Q_EMIT finished();
}
