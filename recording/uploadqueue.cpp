// SPDX-License-Identifier: GPL-3.0-or-later
#include "uploadqueue.h"

#include "databasesql.h"

#include <QDebug>
#include <QThread>

namespace ork2 {

void UploadQueue::add(const QVariantList &row)
{
    if (m_thread == nullptr) {
        start(row);
        return;
    }
    if (m_waitingRows.size() == kWaitingRowsLimit) {
        const QVariantList oldest = m_waitingRows.takeFirst();
        const QString text = QStringLiteral("Upload queue is full, dropped the row of %1 %2")
                                 .arg(oldest.value(0).toString(), oldest.value(1).toString());
        qDebug() << text;
        Q_EMIT log(text);
    }
    m_waitingRows.append(row);
    m_moreRows.wakeOne();
}

void UploadQueue::start(const QVariantList &row)
{
    m_thread = new QThread;
    m_uploader = new databasesql;
    m_uploader->moveToThread(m_thread);
    connect(m_thread, SIGNAL(started()), m_uploader, SLOT(serverSend()));
    connect(m_uploader, SIGNAL(finished()), m_thread, SLOT(quit()));
    connect(m_uploader, SIGNAL(finished()), m_uploader, SLOT(deleteLater()));
    connect(m_thread, SIGNAL(finished()), m_thread, SLOT(deleteLater()));
    connect(m_uploader, SIGNAL(logSQLData(QString)), this, SIGNAL(log(QString)));
    connect(m_thread, &QThread::finished, this, &UploadQueue::uploadEnded);
    m_uploader->setRowValues(row);
    m_thread->start(QThread::InheritPriority);
}

// Called when the database connection has been closed, so the next upload can use its name.
void UploadQueue::uploadEnded()
{
    m_thread = nullptr;
    m_uploader = nullptr;
    if (!m_waitingRows.isEmpty()) {
        start(m_waitingRows.takeFirst());
    }
}

} // namespace ork2
