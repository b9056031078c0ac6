// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace ork2 {

// Tells the service manager about this service: sd_notify(3), one datagram for each call. The
// protocol is simple and stable, so no library is needed. Does nothing if the program was not
// started by a service manager. Main thread.
class ServiceManager
{
public:
    ServiceManager();
    ~ServiceManager();
    Q_DISABLE_COPY_MOVE(ServiceManager)

    // Seconds between two calls of alive(); 0 if the service manager does not expect them.
    [[nodiscard]] int aliveIntervalSeconds() const { return m_aliveIntervalSeconds; }

    void ready() { send("READY=1"); }
    void alive() { send("WATCHDOG=1"); }
    void reloading();
    void stopping() { send("STOPPING=1"); }
    void status(const QString &text) { send("STATUS=" + text.toUtf8()); }

private:
    void send(const QByteArray &message) const;

    QByteArray m_address;
    int m_socket = -1;
    int m_aliveIntervalSeconds = 0;
};

} // namespace ork2
