// SPDX-License-Identifier: GPL-3.0-or-later
#include "watchkeeper.h"

#include <QTimer>

#include <limits>

namespace ork2 {

WatchKeeper::WatchKeeper(const QString &journalPath, const QTimeZone &zone, QObject *parent)
    : QObject(parent)
    , m_zone(zone)
    , m_journal(journalPath)
    , m_timer(new QTimer(this))
{
    m_timer->setInterval(kWatchTickMs);
    connect(m_timer, &QTimer::timeout, this,
        [this] { handle(m_watch.tick(QDateTime::currentSecsSinceEpoch())); });
    connect(&m_call, &AlarmCall::notificationFailed, this, &WatchKeeper::notificationFailed);
}

void WatchKeeper::start(const WatchSettings &settings, int unit, const History &history)
{
    stop();
    if (!settings.enabled) {
        return;
    }
    m_unit = unit;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    m_watch.start(settings, now);
    const Sample *last = history.nearest(now);
    const bool isRecent = last != nullptr && now - last->time < kRecentSeconds;
    m_lastTime = isRecent ? last->time - 1 : now;
    m_timer->start();
    addNew(history);
}

void WatchKeeper::stop()
{
    m_timer->stop();
    clearAlarm();
}

bool WatchKeeper::isRunning() const
{
    return m_timer->isActive();
}

void WatchKeeper::addNew(const History &history)
{
    if (!isRunning()) {
        return;
    }
    const qint64 from = m_lastTime + 1;
    history.forEach(from, std::numeric_limits<qint64>::max(), [this](const Sample &sample) {
        m_lastTime = sample.time;
        handle(m_watch.add(sample));
    });
}

void WatchKeeper::handle(const QList<WatchEvent> &events)
{
    for (const WatchEvent &event : events) {
        record(event);
        if (event.kind == WatchEvent::Kind::Below || event.kind == WatchEvent::Kind::Silence) {
            showAlarm(event);
        }
    }
}

void WatchKeeper::showAlarm(const WatchEvent &event)
{
    const QString time =
        QDateTime::fromSecsSinceEpoch(event.time, m_zone).toString(QStringLiteral("hh:mm"));
    const QString text = QStringLiteral("С %1: %2").arg(time, eventText(event));
    m_call.start(QStringLiteral("ОРК-2 N%1").arg(m_unit), text);
    Q_EMIT alarmChanged(text, event.kind == WatchEvent::Kind::Silence);
}

void WatchKeeper::clearAlarm()
{
    m_call.stop();
    Q_EMIT alarmChanged({}, false);
}

void WatchKeeper::acknowledge()
{
    if (m_call.isActive()) {
        record({WatchEvent::Kind::Acknowledged, QDateTime::currentSecsSinceEpoch()});
    }
    clearAlarm();
}

void WatchKeeper::testCall()
{
    m_call.callOnce(
        QStringLiteral("Архив ОРК-2"), QStringLiteral("Проверка: так выглядит и звучит тревога."));
}

void WatchKeeper::record(const WatchEvent &event)
{
    const QString error = m_journal.append(m_unit, event);
    if (!error.isEmpty()) {
        Q_EMIT journalFailed(error);
    }
}

} // namespace ork2
