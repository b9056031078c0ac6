// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

// Replaces ioctl() in the program that includes this file, so that querying the signals of an open
// port can be made to fail, as with a malfunctioning adapter.
#ifdef Q_OS_LINUX
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

inline std::atomic<bool> g_signalsFail = false;

extern "C" int ioctl(int descriptor, unsigned long request, ...) noexcept // NOLINT: as declared
{
    va_list arguments;
    va_start(arguments, request);
    void *argument = va_arg(arguments, void *);
    va_end(arguments);
    if (request == TIOCMGET && g_signalsFail) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, argument));
}
#endif
