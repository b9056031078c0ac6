// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "alarmcall.h"
#include "ceilingwatch.h"
#include "eventjournal.h"

#include <QObject>
#include <QTimeZone>

class QTimer;

namespace ork2 {

// Watches the samples of today: writes the journal and calls the user until the alarm is
// acknowledged. Does nothing before start().
class WatchKeeper : public QObject
{
    Q_OBJECT

public:
    WatchKeeper(const QString &journalPath, const QTimeZone &zone, QObject *parent = nullptr);

    // Begins with the last sample of the history if it is not older than kRecentSeconds. Does
    // nothing if the settings are not enabled.
    void start(const WatchSettings &settings, int unit, const History &history);
    void stop();
    [[nodiscard]] bool isRunning() const;
    void addNew(const History &history); // of today
    void acknowledge();
    void testCall(); // lets the user see and hear an alarm, without an entry in the journal
    [[nodiscard]] const EventJournal &journal() const { return m_journal; }

Q_SIGNALS:
    // The alarm to show; an empty text if there is none, or if it has been acknowledged.
    void alarmChanged(const QString &text, bool silence);
    void journalFailed(const QString &error);
    void notificationFailed(const QString &error);

private:
    void handle(const QList<WatchEvent> &events);
    void showAlarm(const WatchEvent &event);
    void clearAlarm();
    void record(const WatchEvent &event);

    QTimeZone m_zone;
    EventJournal m_journal;
    CeilingWatch m_watch;
    AlarmCall m_call;
    QTimer *m_timer;
    int m_unit = 0;
    qint64 m_lastTime = 0;
};

inline constexpr int kWatchTickMs = 2000;
inline constexpr qint64 kRecentSeconds = 600; // an older height raises no alarm at the start

} // namespace ork2
