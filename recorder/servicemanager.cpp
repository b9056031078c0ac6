// SPDX-License-Identifier: GPL-3.0-or-later
#include "servicemanager.h"

#include <QtGlobal>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ork2 {

namespace {

constexpr qint64 kMicrosecondsPerSecond = 1'000'000;
constexpr qint64 kNanosecondsPerMicrosecond = 1000;

int aliveInterval()
{
    const QByteArray process = qgetenv("WATCHDOG_PID");
    if (!process.isEmpty() && process.toLongLong() != ::getpid()) {
        return 0;
    }
    const qint64 limit = qgetenv("WATCHDOG_USEC").toLongLong() / kMicrosecondsPerSecond;
    // A third of the limit: one message may be late without any consequence.
    return limit > 0 ? static_cast<int>(std::max<qint64>(limit / 3, 1)) : 0;
}

qint64 monotonicMicroseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * kMicrosecondsPerSecond + now.tv_nsec / kNanosecondsPerMicrosecond;
}

} // namespace

ServiceManager::ServiceManager()
    : m_address(qgetenv("NOTIFY_SOCKET"))
{
    if (m_address.isEmpty()) {
        return;
    }
    m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    m_aliveIntervalSeconds = aliveInterval();
}

ServiceManager::~ServiceManager()
{
    if (m_socket >= 0) {
        ::close(m_socket);
    }
}

void ServiceManager::reloading()
{
    send("RELOADING=1\nMONOTONIC_USEC=" + QByteArray::number(monotonicMicroseconds()));
}

void ServiceManager::send(const QByteArray &message) const
{
    sockaddr_un address{};
    const auto length = static_cast<std::size_t>(m_address.size());
    if (m_socket < 0 || length >= sizeof(address.sun_path)) {
        return;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, m_address.constData(), length);
    if (address.sun_path[0] == '@') {
        address.sun_path[0] = '\0'; // a name that is not in the file system
    }
    // Intentional: errors are ignored. The measurement does not depend on the service manager.
    ::sendto(m_socket, message.constData(), static_cast<std::size_t>(message.size()),
        MSG_NOSIGNAL | MSG_DONTWAIT, reinterpret_cast<const sockaddr *>(&address),
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length));
}

} // namespace ork2
