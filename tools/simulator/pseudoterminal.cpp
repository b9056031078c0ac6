// SPDX-License-Identifier: GPL-3.0-or-later
#include "pseudoterminal.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace ork2 {

namespace {

constexpr std::size_t kPathCapacity = 128;

bool makeRaw(int descriptor)
{
    termios settings{};
    if (::tcgetattr(descriptor, &settings) != 0) {
        return false;
    }
    ::cfmakeraw(&settings);
    ::cfsetispeed(&settings, B9600);
    ::cfsetospeed(&settings, B9600);
    return ::tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

bool makeNonBlocking(int descriptor)
{
    const int flags = ::fcntl(descriptor, F_GETFL);
    return flags != -1 && ::fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) == 0;
}

} // namespace

bool PseudoTerminal::open()
{
    close();
    m_master = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!m_master.isValid()) {
        return failed("posix_openpt");
    }
    if (::grantpt(m_master.get()) != 0) {
        return failed("grantpt");
    }
    if (::unlockpt(m_master.get()) != 0) {
        return failed("unlockpt");
    }
    std::array<char, kPathCapacity> path{};
    if (::ptsname_r(m_master.get(), path.data(), path.size()) != 0) {
        return failed("ptsname");
    }
    m_path = QFile::decodeName(path.data());
    m_slave = openSlave();
    if (!m_slave.isValid()) {
        return failed(path.data());
    }
    if (!makeRaw(m_slave.get())) {
        return failed("tcsetattr");
    }
    if (!makeNonBlocking(m_master.get())) {
        return failed("fcntl");
    }
    return true;
}

void PseudoTerminal::close()
{
    m_slave.reset();
    m_master.reset();
    m_path.clear();
}

qsizetype PseudoTerminal::write(QByteArrayView bytes)
{
    const ssize_t written =
        ::write(m_master.get(), bytes.data(), static_cast<std::size_t>(bytes.size()));
    if (written >= 0) {
        return written;
    }
    if (errno == EAGAIN || errno == EINTR) {
        return 0;
    }
    m_errorString =
        QStringLiteral("write: ") + QString::fromStdString(std::generic_category().message(errno));
    return -1;
}

QByteArray PseudoTerminal::drain()
{
    QByteArray received;
    std::array<char, 256> chunk{};
    for (;;) {
        const ssize_t size = ::read(m_master.get(), chunk.data(), chunk.size());
        if (size <= 0) {
            return received;
        }
        received.append(chunk.data(), size);
    }
}

qsizetype PseudoTerminal::unread() const
{
    const FileDescriptor temporary = m_slave.isValid() ? FileDescriptor() : openSlave();
    int size = 0;
    const int descriptor = m_slave.isValid() ? m_slave.get() : temporary.get();
    return ::ioctl(descriptor, FIONREAD, &size) == 0 ? size : 0;
}

bool PseudoTerminal::readerPresent()
{
    m_slave.reset();
    pollfd master{m_master.get(), POLLIN, 0};
    if (::poll(&master, 1, 0) < 0 || (master.revents & POLLHUP) == 0) {
        return true;
    }
    m_slave = openSlave();
    makeRaw(m_slave.get());
    ::tcflush(m_slave.get(), TCIFLUSH);
    return false;
}

FileDescriptor PseudoTerminal::openSlave() const
{
    return FileDescriptor(
        ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK));
}

bool PseudoTerminal::failed(const char *call)
{
    const int error = errno;
    m_errorString = QStringLiteral("%1: %2").arg(QString::fromLocal8Bit(call),
        QString::fromStdString(std::generic_category().message(error)));
    close();
    return false;
}

} // namespace ork2
