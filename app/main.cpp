// SPDX-License-Identifier: GPL-3.0-or-later
#include "odbcdriveralias.h"
#include "receiver.h"
#include "startup.h"
#include "terminal.h"

#include <QApplication>
#include <QIcon>

#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

int runTerminal(QApplication &application)
{
    ork2::registerOdbcDriverAlias();
    Receiver::registerType();
    // Desktop environments use this name to find the menu entry and the icon for the task bar.
    QGuiApplication::setDesktopFileName(QStringLiteral("ork2-terminal"));
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/img/logokas_p9x_2.ico")));

    ork2::Splash splash;
    splash.countUp();

    ork2::Terminal terminal(application, QUrl(QStringLiteral("qrc:/main")));
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
#ifdef SIGPIPE
    // A program that reads the log may exit first, which must not end the measurement.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    // Only one application object: a second one on the stack would crash at exit.
    QApplication application(argc, argv);
    const int status = runTerminal(application);
    // The worker thread is still running and delivering events. Exit immediately, before the
    // application object and the static objects that it uses are destroyed.
    std::fflush(nullptr);
    std::_Exit(status);
}
