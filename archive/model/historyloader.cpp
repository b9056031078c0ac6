// SPDX-License-Identifier: GPL-3.0-or-later
#include "historyloader.h"

#include "dayreader.h"

#include <QFileInfo>
#include <QTimer>

namespace ork2 {

namespace {

bool isUnchanged(const DayPointer &day, const QString &path)
{
    if (day == nullptr || day->path != path) {
        return false;
    }
    const QFileInfo info(path);
    return info.isFile() && day->size == info.size() && day->modified == info.lastModified();
}

// The last line of yesterday may be written after midnight.
std::vector<DayPointer> readChanged(
    const Instrument &instrument, const History &known, QDate today, const QTimeZone &zone)
{
    QList<QDate> dates{today.addDays(-1), today};
    for (const DayPointer &day : known.days()) {
        if (!day->isRead() && !dates.contains(day->date)) {
            dates.append(day->date);
        }
    }
    std::vector<DayPointer> changed;
    for (const QDate date : std::as_const(dates)) {
        const QString path = instrument.dayFile(date);
        const DayPointer day = known.day(date);
        const QFileInfo info(path);
        if (info.isFile() && info.isReadable() && !isUnchanged(day, path)) {
            changed.push_back(readDay(path, date, instrument.unit, zone));
        }
    }
    return changed;
}

} // namespace

HistoryLoader::HistoryLoader(const QTimeZone &zone, QObject *parent)
    : QObject(parent)
    , m_zone(zone)
    , m_followTimer(new QTimer(this))
{
    m_thread.setMaxThreadCount(1);
    m_followTimer->setInterval(kFollowMs);
    connect(m_followTimer, &QTimer::timeout, this, &HistoryLoader::check);
}

HistoryLoader::~HistoryLoader()
{
    if (m_cancel) {
        *m_cancel = true;
    }
    m_thread.clear();
    m_thread.waitForDone();
}

void HistoryLoader::load(const Instrument &instrument, QDate first, QDate last)
{
    if (m_cancel) {
        *m_cancel = true;
    }
    m_instrument = instrument;
    m_cancel = std::make_shared<std::atomic<bool>>(false);
    m_thread.start([this, instrument, first, last, known = m_history, cancel = m_cancel] {
        History history;
        for (const QDate date : instrument.days) {
            if (*cancel) {
                return;
            }
            if (date < first || date > last) {
                continue;
            }
            const QString path = instrument.dayFile(date);
            DayPointer day = known.day(date);
            history.set(isUnchanged(day, path)
                    ? day
                    : readDay(path, date, instrument.unit, m_zone, cancel.get()));
        }
        QMetaObject::invokeMethod(this, [this, history, cancel] {
            if (cancel == m_cancel) {
                m_cancel.reset();
                m_history = history;
                Q_EMIT loaded();
                m_followTimer->start();
            }
        });
    });
}

void HistoryLoader::check()
{
    if (m_checking || m_cancel) {
        return;
    }
    m_checking = true;
    const QDate today = QDateTime::currentDateTime().toTimeZone(m_zone).date();
    m_thread.start([this, today, instrument = m_instrument, known = m_history] {
        const std::vector<DayPointer> days = readChanged(instrument, known, today, m_zone);
        QMetaObject::invokeMethod(this, [this, days] {
            m_checking = false;
            for (const DayPointer &day : days) {
                if (day->path == m_instrument.dayFile(day->date)) {
                    m_history.set(day);
                    Q_EMIT dayLoaded(day->date);
                }
            }
        });
    });
}

} // namespace ork2
