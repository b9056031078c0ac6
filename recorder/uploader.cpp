// SPDX-License-Identifier: GPL-3.0-or-later
#include "uploader.h"

#include "databasesql.h"

#include <utility>

namespace ork2 {

UploadWorker::UploadWorker(DatabaseServer server, QString storePath)
    : m_server(std::move(server))
    , m_storePath(std::move(storePath))
    , m_retry(this)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(kUploadRetryMs);
    connect(&m_retry, &QTimer::timeout, this, &UploadWorker::send);
}

void UploadWorker::send()
{
    if (m_ending || m_retry.isActive()) {
        return; // the server was asked a moment ago
    }
    qint64 sent = 0;
    const QString error = prepare() ? sendWaiting(sent) : m_store->error();
    report(error, sent);
}

bool UploadWorker::prepare()
{
    if (m_store == nullptr) {
        m_store = std::make_unique<UploadStore>(m_storePath, QStringLiteral("upload-reader"));
        if (!m_store->open()) {
            return false;
        }
    }
    return removeSent();
}

// Returns false if the position cannot be stored. Then no further row may be sent: after a restart,
// all of them would be sent again.
bool UploadWorker::removeSent()
{
    return m_sentUpTo == 0 || m_store->removeUpTo(m_sentUpTo);
}

// Returns why not all rows could be sent; empty if they were.
QString UploadWorker::sendWaiting(qint64 &sent)
{
    std::optional<StoredRow> row = m_store->firstAfter(m_sentUpTo);
    if (!row) {
        return {};
    }
    databasesql connection(m_server);
    QString error;
    if (!connection.open()) {
        error = connection.lastError();
    }
    while (row && error.isEmpty() && !m_ending) {
        if (!connection.inserIntoTable(row->values)) {
            error = connection.lastError();
            break;
        }
        m_sentUpTo = row->id;
        ++sent;
        if (!removeSent()) {
            error = m_store->error();
        }
        row = m_store->firstAfter(m_sentUpTo);
    }
    connection.close();
    return error;
}

void UploadWorker::report(const QString &error, qint64 sent)
{
    m_sentSinceStop += sent;
    if (!error.isEmpty()) {
        m_retry.start();
        if (!m_stopped) {
            m_stopped = true;
            m_sentSinceStop = 0;
            Q_EMIT stopped(error, m_store->count());
        }
    } else if (m_stopped && !m_ending) {
        m_stopped = false;
        Q_EMIT resumed(m_sentSinceStop);
    }
}

Uploader::Uploader(const DatabaseServer &server, const QString &storePath, QObject *parent)
    : QObject(parent)
    , m_store(storePath, QStringLiteral("upload-writer"))
    , m_worker(new UploadWorker(server, storePath))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    connect(m_worker, &UploadWorker::stopped, this, &Uploader::stopped);
    connect(m_worker, &UploadWorker::resumed, this, &Uploader::resumed);
}

Uploader::~Uploader()
{
    if (!m_thread.isRunning()) {
        delete m_worker;
        return;
    }
    m_worker->endSoon();
    m_thread.quit();
    if (!m_thread.wait(kUploadEndMs)) {
        m_thread.terminate(); // the driver ignores its timeouts; the process ends anyway
        m_thread.wait();
    }
}

bool Uploader::start()
{
    if (!m_store.open()) {
        return false;
    }
    m_thread.start();
    sendSoon(); // rows of an earlier process
    return true;
}

bool Uploader::add(const QVariantList &row)
{
    if ((!m_thread.isRunning() && !start()) || !m_store.append(row)) {
        return false;
    }
    sendSoon();
    return true;
}

void Uploader::sendSoon()
{
    QMetaObject::invokeMethod(m_worker, &UploadWorker::send);
}

} // namespace ork2
