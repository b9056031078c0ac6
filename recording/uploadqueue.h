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

// Uploads rows to the database one after the other, each with an uploader and a thread of its own,
// which delete themselves; nothing here waits for them. A row that comes meanwhile waits in memory,
// and the oldest one goes next. At kWaitingRowsLimit the oldest waiting row is dropped, and log
// says which. Rows still waiting when the program ends are lost, and so is a row whose upload
// failed. Main thread.
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

    QWaitCondition m_moreRows;   // woken for each row that has to wait; nothing waits on it
    QMutex m_handOver;           // kept; the uploader's own mutex guards the row
    QThread *m_thread = nullptr; // of the upload that is running; both delete themselves
    databasesql *m_uploader = nullptr;
    QList<QVariantList> m_waitingRows; // oldest first
};

} // namespace ork2
