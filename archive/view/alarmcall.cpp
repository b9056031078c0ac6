// SPDX-License-Identifier: GPL-3.0-or-later
#include "alarmcall.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
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

// Returns without waiting for an answer: a missing service must not stop the window.
void notify(const QString &title, const QString &text)
{
    if (!hasSessionBus()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(kService,
        QStringLiteral("/org/freedesktop/Notifications"), kService, QStringLiteral("Notify"));
    constexpr uchar kCritical = 2;
    const QVariantMap hints{{QStringLiteral("urgency"), QVariant::fromValue(kCritical)},
        {QStringLiteral("sound-name"), QStringLiteral("alarm-clock-elapsed")}};
    message << QStringLiteral("ork2-archive") << 0U << QStringLiteral("ork2-archive") << title
            << text << QStringList() << hints << 0;
    QDBusConnection::sessionBus().send(message);
}

} // namespace

AlarmCall::AlarmCall(QObject *parent)
    : QObject(parent)
    , m_sound(new QTimer(this))
{
    m_sound->setInterval(kSoundRepeatMs);
    connect(m_sound, &QTimer::timeout, this, &QApplication::beep);
}

void AlarmCall::start(const QString &title, const QString &text)
{
    notify(title, text);
    QApplication::beep();
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
