// SPDX-License-Identifier: GPL-3.0-or-later
#include "alarmcall.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QTimer>
#include <QVariantMap>

namespace ork2 {

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");

// Without a session bus, connecting would try to start one and block the window.
bool hasSessionBus()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")
        || QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

QDBusMessage notification(const QString &title, const QString &text)
{
    QDBusMessage message = QDBusMessage::createMethodCall(kService,
        QStringLiteral("/org/freedesktop/Notifications"), kService, QStringLiteral("Notify"));
    constexpr uchar kCritical = 2;
    const QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(kCritical)},
        {QStringLiteral("sound-name"), QStringLiteral("alarm-clock-elapsed")}};
    message << QStringLiteral("ork2-archive") << 0U << QStringLiteral("ork2-archive") << title
            << text << QStringList() << hints << 0;
    return message;
}

} // namespace

AlarmCall::AlarmCall(QObject *parent)
    : QObject(parent)
    , m_sound(new QTimer(this))
{
    m_sound->setInterval(kSoundRepeatMs);
    connect(m_sound, &QTimer::timeout, this, &QApplication::beep);
}

void AlarmCall::notify(const QString &title, const QString &text)
{
    const QString failed =
        QStringLiteral("Уведомление на рабочем столе не показано: нет службы уведомлений.");
    if (!hasSessionBus() || !QDBusConnection::sessionBus().isConnected()) {
        Q_EMIT notificationFailed(failed);
        return;
    }
    auto *call = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(notification(title, text)), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, failed] {
        if (call->isError()) {
            Q_EMIT notificationFailed(failed);
        }
        call->deleteLater();
    });
}

void AlarmCall::callOnce(const QString &title, const QString &text)
{
    notify(title, text);
    QApplication::beep();
}

void AlarmCall::start(const QString &title, const QString &text)
{
    callOnce(title, text);
    m_sound->start();
}

void AlarmCall::stop()
{
    m_sound->stop();
}

bool AlarmCall::isActive() const
{
    return m_sound->isActive();
}

} // namespace ork2
