// SPDX-License-Identifier: GPL-3.0-or-later
#include "terminationsignal.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

namespace ork2 {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM};

volatile std::sig_atomic_t g_writeEnd = -1;

// Calls only functions that POSIX allows in a signal handler.
extern "C" void forwardSignal(int /*number*/)
{
    const char mark = 0;
    [[maybe_unused]] const ssize_t ignored = ::write(g_writeEnd, &mark, sizeof mark);
}

void handleWith(void (*handler)(int))
{
    struct sigaction action
    { };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int number : kSignals) {
        ::sigaction(number, &action, nullptr);
    }
}

} // namespace

TerminationSignal::TerminationSignal(QObject *parent)
    : QObject(parent)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) {
        return;
    }
    m_readEnd = FileDescriptor(ends[0]);
    m_writeEnd = FileDescriptor(ends[1]);
    auto *notifier = new QSocketNotifier(m_readEnd.get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        Q_EMIT received();
    });
    g_writeEnd = m_writeEnd.get();
    handleWith(forwardSignal);
}

TerminationSignal::~TerminationSignal()
{
    if (isInstalled()) {
        handleWith(SIG_DFL);
    }
}

} // namespace ork2
