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

} // namespace

HistoryLoader::HistoryLoader(const QTimeZone &zone, QObject *parent)
    : QObject(parent)
    , m_zone(zone)
    , m_followTimer(new QTimer(this))
{
    m_thread.setMaxThreadCount(1);
    m_followTimer->setInterval(kFollowMs);
    connect(m_followTimer, &QTimer::timeout, this, &HistoryLoader::checkToday);
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
            }
        });
    });
}

void HistoryLoader::setFollowing(bool following)
{
    if (following) {
        m_followTimer->start();
        checkToday();
    } else {
        m_followTimer->stop();
    }
}

void HistoryLoader::checkToday()
{
    const QDate today = QDateTime::currentDateTime().toTimeZone(m_zone).date();
    const QString path = m_instrument.dayFile(today);
    if (m_readingToday || m_cancel || m_instrument.folder.isEmpty() || !QFileInfo(path).isFile()
        || isUnchanged(m_history.day(today), path)) {
        return;
    }
    m_readingToday = true;
    m_thread.start([this, path, today, unit = m_instrument.unit] {
        const DayPointer day = readDay(path, today, unit, m_zone);
        QMetaObject::invokeMethod(this, [this, day] {
            m_readingToday = false;
            if (day->path == m_instrument.dayFile(day->date)) {
                m_history.set(day);
                Q_EMIT dayLoaded(day->date);
            }
        });
    });
}

} // namespace ork2
