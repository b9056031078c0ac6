// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QTimer;

namespace ork2 {

inline constexpr int kSoundRepeatMs = 5000;

// Calls the user: a desktop notification (org.freedesktop.Notifications) with the sound of an
// alarm, and the bell of the display (QApplication::beep(), no sound library), repeated until
// stop(). Does not wait for the notification service.
class AlarmCall : public QObject
{
    Q_OBJECT

public:
    explicit AlarmCall(QObject *parent = nullptr);

    void start(const QString &title, const QString &text);
    void stop();
    void callOnce(const QString &title, const QString &text);
    [[nodiscard]] bool isActive() const;

Q_SIGNALS:
    void notificationFailed(const QString &error); // for the user

private:
    void notify(const QString &title, const QString &text);

    QTimer *m_sound;
};

} // namespace ork2
