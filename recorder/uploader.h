// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "databaseserver.h"
#include "uploadstore.h"

#include <QObject>
#include <QThread>
#include <QTimer>
#include <QVariantList>

#include <memory>

namespace ork2 {

inline constexpr int kUploadRetryMs = 10000; // from a failed upload to the next attempt
// Longer than the driver needs for a statement that the server does not answer: its timeout, and
// the same again for cancelling the statement.
inline constexpr int kUploadEndMs = 12000;

// Sends the stored rows in their order, in the uploader's thread. A row is removed from the store
// after the server has confirmed it and before the next one is sent. So a row is sent again only if
// the connection or the process ends between the server's execution of the INSERT and the removal:
// one row at most.
class UploadWorker : public QObject
{
    Q_OBJECT

public:
    UploadWorker(DatabaseServer server, QString storePath);

    // All waiting rows, until the thread is interrupted; continues later if that fails.
    void send();

Q_SIGNALS:
    void stopped(const QString &cause, qint64 waiting); // once, until resumed() follows
    void resumed(qint64 sent);

private:
    [[nodiscard]] bool prepare();
    [[nodiscard]] bool removeSent();
    [[nodiscard]] QString sendWaiting(qint64 &sent);
    void report(const QString &error, qint64 sent);

    DatabaseServer m_server;
    QString m_storePath;
    std::unique_ptr<UploadStore> m_store; // created in the thread
    qint64 m_sentUpTo = 0;
    bool m_stopped = false;
    qint64 m_sentSinceStop = 0;
    QTimer m_retry;
};

// Stores rows on the disk and sends them to the database server. Main thread; only the destructor
// waits for the server, if it is sending. Rows that could not be sent wait in the file for another
// uploader of this or a later process.
class Uploader : public QObject
{
    Q_OBJECT

public:
    Uploader(const DatabaseServer &server, const QString &storePath, QObject *parent = nullptr);
    ~Uploader() override;
    Q_DISABLE_COPY_MOVE(Uploader)

    // Returns false if the file of the waiting rows cannot be used; see error(). add() tries again.
    [[nodiscard]] bool openStore();
    // Starts to send the rows that wait in the file and those that are added. Only one uploader of
    // a process may send at a time.
    void startSending();
    // Ends after the current row or its timeouts; ended() follows. Rows must no longer be added.
    void endSoon();
    // Returns after the row is on the disk. Returns false if it could not be stored.
    [[nodiscard]] bool add(const QVariantList &row);
    [[nodiscard]] QString error() const { return m_store.error(); }
    [[nodiscard]] QString movedAside() const { return m_store.movedAside(); }

Q_SIGNALS:
    void stopped(const QString &cause, qint64 waiting);
    void resumed(qint64 sent);
    void ended();

private:
    void sendSoon();

    UploadStore m_store;
    bool m_storeIsOpen = false;
    bool m_sending = false;
    QThread m_thread;
    UploadWorker *m_worker = nullptr; // deleted by its thread
};

} // namespace ork2
