// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

class databasesql;

// Sees every upload of its lifetime from its beginning: the uploader is met when it is moved to its
// thread, which is before that thread starts. Also measures how long the main thread was held up.
class UploadWatch : public QObject
{
    Q_OBJECT

public:
    UploadWatch();

    [[nodiscard]] int started() const { return m_started; }
    [[nodiscard]] int finished() const { return m_finished; }
    [[nodiscard]] int uploadersAlive() const { return m_uploadersAlive; }
    [[nodiscard]] int threadsAlive() const { return m_threadsAlive; }
    [[nodiscard]] bool idle() const { return m_uploadersAlive == 0 && m_threadsAlive == 0; }
    [[nodiscard]] QStringList texts() const { return m_texts; } // of logSQLData
    [[nodiscard]] qint64 finishedAfterMs() const { return m_finishedAfterMs; }
    // Longest time without a turn of the event loop in which the main thread neither computed nor
    // was ready to: it waited for something else than its next event.
    [[nodiscard]] double longestWaitMs() const { return m_longestWaitMs; }

    // The time since the last turn was the test's own waiting and does not count.
    void excuse();

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void meet(databasesql *uploader);
    [[nodiscard]] double waitedMs();
    void tick();

    int m_started = 0;
    int m_finished = 0;
    int m_uploadersAlive = 0;
    int m_threadsAlive = 0;
    QStringList m_texts;
    QElapsedTimer m_clock;
    qint64 m_finishedAfterMs = 0;
    QTimer m_ticks;
    qint64 m_lastTickNs = 0;
    qint64 m_lastBusyNs = 0;
    double m_longestWaitMs = 0.0;
};
