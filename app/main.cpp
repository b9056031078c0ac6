// SPDX-License-Identifier: GPL-3.0-or-later
#include "odbcdriveralias.h"
#include "receiver.h"
#include "startup.h"
#include "terminal.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QSplashScreen>

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

    QPixmap pixmap(QStringLiteral(":/img/logoKAS.png"));
    QSplashScreen splash(pixmap, Qt::WindowFlags());
    QPalette palette;
    palette.setBrush(QPalette::All, QPalette::WindowText, QBrush(Qt::white, Qt::SolidPattern));
    const QFont font(QStringLiteral("Palatino Linotype"), 9);
    QLabel version(QStringLiteral("Версия " ORK2_VERSION), &splash);
    version.setPalette(palette);
    version.setFont(font);
    version.setMinimumHeight(540);
    version.setMinimumWidth(430);
    version.setAlignment(Qt::AlignRight | Qt::AlignBottom);
    version.show();
    splash.show();
    QCoreApplication::processEvents();
    ork2::countUp(splash, pixmap);
    splash.close();

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
