// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMutex>
#include <QObject>
#include <QVariant>
#include <QWaitCondition>

class DataloggerProbe;
class QThread;
class databasesql;

namespace ork2 {

inline constexpr qsizetype kWaitingRowsLimit = 60; // one hour of minutes

// Uploads rows to the database one after the other. Each upload uses a new uploader and a new
// thread, which delete themselves; this class never blocks. Rows added during an upload wait in
// memory; the oldest is uploaded first. If kWaitingRowsLimit is reached, the oldest waiting row is
// dropped, which is reported through log(). Rows that are still waiting when the program exits are
// lost, and so is a row whose upload fails. Main thread.
class UploadQueue : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void add(const QVariantList &row);

Q_SIGNALS:
    void log(QString text);

private:
    // Tests read the uploader's state.
    friend class ::DataloggerProbe;

    void start(const QVariantList &row);
    void uploadEnded();

    QWaitCondition m_moreRows;   // woken for each queued row; no thread waits on it
    QMutex m_handOver;           // not used: the uploader's mutex protects the row
    QThread *m_thread = nullptr; // of the current upload; deletes itself, as does the uploader
    databasesql *m_uploader = nullptr;
    QList<QVariantList> m_waitingRows; // oldest first
};

} // namespace ork2
