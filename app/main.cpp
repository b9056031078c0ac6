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
    // Desktops find the menu entry, and with it the icon in their task bar, by this name.
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
    // Whoever reads the log may end before the program; that must not end the measurement.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    // One application object; a second one stacked on it would crash at exit.
    QApplication application(argc, argv);
    const int status = runTerminal(application);
    // The worker thread is not stopped and goes on delivering events: the process ends under it at
    // once, while the application and the static objects that it uses still stand.
    std::fflush(nullptr);
    std::_Exit(status);
}
