// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

class databasesql;

// Observes all uploads during its lifetime. Detects an uploader when it is moved to its thread,
// before the thread starts. Also measures how long the main thread was blocked.
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
    // The longest time during which the main thread was blocked outside the event loop: it was
    // neither running nor ready to run.
    [[nodiscard]] double longestBlockMs() const { return m_longestBlockMs; }

    // Excludes the time since the last tick, during which the test itself waited.
    void excludeWaiting();

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void watch(databasesql *uploader);
    [[nodiscard]] double blockedMs();
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
    double m_longestBlockMs = 0.0;
};
