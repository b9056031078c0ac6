// SPDX-License-Identifier: GPL-3.0-or-later
#include "uploader.h"

#include "databasesql.h"

#include <utility>

namespace ork2 {

namespace {

bool isEnding()
{
    return QThread::currentThread()->isInterruptionRequested();
}

} // namespace

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
    if (m_retry.isActive()) {
        return; // the server was asked a moment ago
    }
    qint64 sent = 0;
    const QString error = prepare() ? sendWaiting(sent) : m_store->error();
    report(error, sent);
}

bool UploadWorker::prepare()
{
    if (m_store == nullptr) {
        m_store = std::make_unique<UploadStore>(m_storePath);
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
        return m_store->error();
    }
    databasesql connection(m_server);
    QString error;
    if (!connection.open()) {
        error = connection.lastError();
    }
    while (row && error.isEmpty() && !isEnding()) {
        if (!connection.inserIntoTable(row->values)) {
            error = connection.lastError();
            break;
        }
        m_sentUpTo = row->id;
        ++sent;
        row = removeSent() ? m_store->firstAfter(m_sentUpTo) : std::nullopt;
        error = m_store->error();
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
    } else if (m_stopped && !isEnding()) {
        m_stopped = false;
        Q_EMIT resumed(m_sentSinceStop);
    }
}

Uploader::Uploader(const DatabaseServer &server, const QString &storePath, QObject *parent)
    : QObject(parent)
    , m_store(storePath)
    , m_worker(new UploadWorker(server, storePath))
{
    m_worker->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    connect(m_worker, &UploadWorker::stopped, this, &Uploader::stopped);
    connect(m_worker, &UploadWorker::resumed, this, &Uploader::resumed);
    connect(&m_thread, &QThread::finished, this, &Uploader::ended);
    m_thread.start();
}

Uploader::~Uploader()
{
    endSoon();
    if (!m_thread.wait(kUploadEndMs)) {
        m_thread.terminate(); // the driver ignores its timeouts; the process ends anyway
        m_thread.wait();
    }
}

bool Uploader::openStore()
{
    m_storeIsOpen = m_storeIsOpen || m_store.open();
    return m_storeIsOpen;
}

void Uploader::startSending()
{
    m_sending = true;
    sendSoon();
}

void Uploader::endSoon()
{
    m_sending = false;
    m_thread.requestInterruption();
    m_thread.quit();
}

bool Uploader::add(const QVariantList &row)
{
    if (!openStore() || !m_store.append(row)) {
        return false;
    }
    sendSoon();
    return true;
}

// The worker must not open the file before it is known to be usable: a damaged one is renamed.
void Uploader::sendSoon()
{
    if (m_sending && m_storeIsOpen) {
        QMetaObject::invokeMethod(m_worker, &UploadWorker::send);
    }
}

} // namespace ork2
