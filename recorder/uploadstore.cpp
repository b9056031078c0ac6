// SPDX-License-Identifier: GPL-3.0-or-later
#include "uploadstore.h"

#include <QDateTime>
#include <QFile>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

namespace ork2 {

namespace {

// AUTOINCREMENT: an id that was removed is not used again, so a row that was sent but could not be
// removed is not mistaken for a new one.
const QString kCreate = QStringLiteral(
    "CREATE TABLE IF NOT EXISTS waiting (id INTEGER PRIMARY KEY AUTOINCREMENT, date TEXT, "
    "time TEXT, unit INTEGER, first TEXT, second TEXT, channel TEXT)");
constexpr int kColumns = 6;

} // namespace

UploadStore::UploadStore(const QString &path)
    : m_path(path)
    , m_db(QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QUuid::createUuid().toString()))
{
    m_db.setDatabaseName(path);
}

UploadStore::~UploadStore()
{
    const QString connection = m_db.connectionName();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connection);
}

bool UploadStore::open()
{
    if (openFile()) {
        return true;
    }
    // 11 and 26: SQLITE_CORRUPT and SQLITE_NOTADB. Any other failure may pass.
    const bool damaged = m_error.startsWith(u"11 ") || m_error.startsWith(u"26 ");
    if (!damaged) {
        return false;
    }
    m_db.close();
    m_movedAside = m_path + QDateTime::currentDateTime().toString(u"'.damaged-'yyyyMMdd-hhmmss");
    return QFile::rename(m_path, m_movedAside) && openFile();
}

bool UploadStore::openFile()
{
    if (!m_db.isOpen() && !m_db.open()) {
        m_error = m_db.lastError().nativeErrorCode() + u' ' + m_db.lastError().text();
        return false;
    }
    // FULL: a row is on the disk before append() returns.
    return run(QStringLiteral("PRAGMA journal_mode=WAL"))
        && run(QStringLiteral("PRAGMA synchronous=FULL")) && run(kCreate);
}

bool UploadStore::append(const QVariantList &row)
{
    QVariantList values;
    for (int column = 0; column < kColumns; ++column) {
        values << row.value(column).toString();
    }
    return run(QStringLiteral("INSERT INTO waiting (date, time, unit, first, second, channel) "
                              "VALUES (?, ?, ?, ?, ?, ?)"),
        values);
}

std::optional<StoredRow> UploadStore::firstAfter(qint64 id)
{
    QSqlQuery query(m_db);
    const bool done = run(query,
        QStringLiteral("SELECT id, date, time, unit, first, second, channel "
                       "FROM waiting WHERE id > ? ORDER BY id LIMIT 1"),
        {id});
    if (!done || !query.next()) {
        return std::nullopt;
    }
    StoredRow row{query.value(0).toLongLong(), {}};
    for (int column = 1; column <= kColumns; ++column) {
        row.values << query.value(column);
    }
    return row;
}

bool UploadStore::removeUpTo(qint64 id)
{
    return run(QStringLiteral("DELETE FROM waiting WHERE id <= ?"), {id});
}

qint64 UploadStore::count()
{
    QSqlQuery query(QStringLiteral("SELECT COUNT(*) FROM waiting"), m_db);
    return query.next() ? query.value(0).toLongLong() : 0;
}

bool UploadStore::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(m_db);
    return run(query, statement, values);
}

bool UploadStore::run(QSqlQuery &query, const QString &statement, const QVariantList &values)
{
    m_error.clear();
    bool done = query.prepare(statement);
    for (const QVariant &value : values) {
        query.addBindValue(value);
    }
    done = done && query.exec();
    if (!done) {
        m_error = query.lastError().nativeErrorCode() + u' ' + query.lastError().text();
    }
    return done;
}

} // namespace ork2
