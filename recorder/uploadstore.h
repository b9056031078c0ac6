// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QVariantList>

#include <optional>

class QSqlQuery;

namespace ork2 {

struct StoredRow
{
    qint64 id = 0; // increases with each row, never used again
    QVariantList values;
};

// Rows that wait for the upload, in a file of SQLite: one row each, oldest first. A stored row
// survives the end of the process and a power failure. Several objects may use the same file, each
// in its own thread, in which it must be created and destroyed.
class UploadStore
{
public:
    explicit UploadStore(const QString &path);
    ~UploadStore();
    Q_DISABLE_COPY_MOVE(UploadStore)

    // Creates the file if it does not exist. A damaged file is renamed, and movedAside() then
    // returns its new name. Returns false if there is no usable file; see error().
    [[nodiscard]] bool open();
    [[nodiscard]] QString movedAside() const { return m_movedAside; }

    // Row: date, time, unit number, two layers, channel. Returns false on failure; see error().
    [[nodiscard]] bool append(const QVariantList &row);
    // Returns nothing if there is no such row, or on failure; then error() is not empty.
    [[nodiscard]] std::optional<StoredRow> firstAfter(qint64 id);
    // Removes the rows up to this one. Returns false on failure; see error().
    [[nodiscard]] bool removeUpTo(qint64 id);
    [[nodiscard]] qint64 count();

    // What failed in the last call of open(), append(), firstAfter() or removeUpTo(); empty if it
    // succeeded.
    [[nodiscard]] QString error() const { return m_error; }

private:
    [[nodiscard]] bool openFile();
    [[nodiscard]] bool run(const QString &statement, const QVariantList &values = {});
    [[nodiscard]] bool run(QSqlQuery &query, const QString &statement, const QVariantList &values);

    QString m_path;
    QSqlDatabase m_db;
    QString m_movedAside;
    QString m_error;
};

} // namespace ork2
