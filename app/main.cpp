// SPDX-License-Identifier: GPL-3.0-or-later
#include "odbcdriveralias.h"
#include "receiver.h"
#include "startup.h"
#include "terminal.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QSplashScreen>

#include <cstdio>
#include <cstdlib>

namespace {

int runTerminal(int argc, char **argv)
{
    // One application object; a second one stacked on it would crash at exit.
    QApplication application(argc, argv);
    ork2::registerOdbcDriverAlias();
    Receiver::registerType();
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
    const int status = runTerminal(argc, argv);
    // The worker thread is not stopped and may be in the middle of a frame: the process ends under
    // it at once, before static objects that it uses are destroyed.
    std::fflush(nullptr);
    std::_Exit(status);
}
