// SPDX-License-Identifier: GPL-3.0-or-later
#include "recordersignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace ork2 {

RecorderSignals::RecorderSignals(QObject *parent)
    : QObject(parent)
{
    sigset_t handled{};
    sigemptyset(&handled);
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        sigaddset(&handled, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &handled, nullptr);
    m_descriptor = ::signalfd(-1, &handled, SFD_CLOEXEC | SFD_NONBLOCK);
    if (m_descriptor >= 0) {
        auto *notifier = new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &RecorderSignals::read);
    }
}

RecorderSignals::~RecorderSignals()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

void RecorderSignals::read()
{
    signalfd_siginfo received{};
    while (::read(m_descriptor, &received, sizeof(received)) == sizeof(received)) {
        if (received.ssi_signo == SIGHUP) {
            Q_EMIT reload();
        } else {
            Q_EMIT terminate();
        }
    }
}

} // namespace ork2
