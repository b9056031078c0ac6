// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mainbackendprobe.h"
#include "terminal.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QUrl>

#include <memory>

// The complete object graph of the program. Unlike in the program, the worker's thread is stopped
// before the objects are destroyed.
struct TestTerminalDeleter
{
    void operator()(ork2::Terminal *terminal) const
    {
        MainBackEndProbe(terminal->backEnd()).endWorker();
        delete terminal;
    }
};
using TestTerminal = std::unique_ptr<ork2::Terminal, TestTerminalDeleter>;

[[nodiscard]] inline TestTerminal makeTestTerminal(
    const QUrl &document = QUrl(QStringLiteral("qrc:/main")))
{
    return TestTerminal(new ork2::Terminal(*QCoreApplication::instance(), document));
}

// Returns null if the document could not be loaded.
[[nodiscard]] inline QQuickWindow *mainWindow(ork2::Terminal &terminal)
{
    return qobject_cast<QQuickWindow *>(terminal.engine().rootObjects().value(0));
}
