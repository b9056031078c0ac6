// SPDX-License-Identifier: GPL-3.0-or-later
#include "uploadwatch.h"

#include "databasesql.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QThread>

namespace {

constexpr int kTickMs = 5;
constexpr double kNsPerMs = 1e6;

// Returns the nanoseconds during which the calling thread was running or ready to run.
qint64 busyNs()
{
    QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const QList<QByteArray> numbers = file.readAll().split(' ');
    return numbers.value(0).toLongLong() + numbers.value(1).toLongLong();
}

} // namespace

UploadWatch::UploadWatch()
{
    qApp->installEventFilter(this);
    m_clock.start();
    m_ticks.setTimerType(Qt::PreciseTimer);
    m_ticks.callOnTimeout(this, &UploadWatch::tick);
    m_ticks.start(kTickMs);
    m_lastBusyNs = busyNs();
}

bool UploadWatch::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::ThreadChange) {
        if (auto *uploader = qobject_cast<databasesql *>(object)) {
            watch(uploader);
        }
    } else if (event->type() == QEvent::DeferredDelete && qobject_cast<QThread *>(object)) {
        --m_threadsAlive;
    }
    return false;
}

void UploadWatch::watch(databasesql *uploader)
{
    ++m_started;
    ++m_uploadersAlive;
    ++m_threadsAlive;
    connect(
        uploader, &databasesql::logSQLData, this, [this](const QString &text) { m_texts << text; });
    connect(uploader, &databasesql::finished, this, [this] {
        ++m_finished;
        m_finishedAfterMs = m_clock.elapsed();
    });
    connect(uploader, &QObject::destroyed, this, [this] { --m_uploadersAlive; });
}

void UploadWatch::excludeWaiting()
{
    (void)blockedMs();
}

void UploadWatch::tick()
{
    m_longestBlockMs = qMax(m_longestBlockMs, blockedMs());
}

double UploadWatch::blockedMs()
{
    const qint64 now = m_clock.nsecsElapsed();
    const qint64 busy = busyNs();
    const auto waited = static_cast<double>((now - m_lastTickNs) - (busy - m_lastBusyNs));
    m_lastTickNs = now;
    m_lastBusyNs = busy;
    return waited / kNsPerMs;
}
