// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QTimer;

namespace ork2 {

inline constexpr int kSoundRepeatMs = 5000;

// Calls the user: a desktop notification (org.freedesktop.Notifications) with the sound of an
// alarm, and the bell of the system, repeated until stop(). Without a notification service, only
// the bell.
class AlarmCall : public QObject
{
    Q_OBJECT

public:
    explicit AlarmCall(QObject *parent = nullptr);

    void start(const QString &title, const QString &text);
    void stop();
    [[nodiscard]] bool isActive() const;

private:
    QTimer *m_sound;
};

} // namespace ork2
