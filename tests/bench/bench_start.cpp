// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the time from the end of the splash screen to the first frame of the main window, and
// the resident memory. Requires a display: tests/with-display build/dev/tests/bench/bench_start
#include "terminal.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QTemporaryDir profile;
    qputenv("XDG_CONFIG_HOME", profile.path().toUtf8());
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    QElapsedTimer clock;
    clock.start();
    ork2::Terminal terminal(application, QUrl(QStringLiteral("qrc:/main")));
    auto *window = qobject_cast<QQuickWindow *>(terminal.engine().rootObjects().value(0));
    if (window == nullptr) {
        std::fprintf(stderr, "The main document did not load\n");
        return 1;
    }
    const auto report = [&clock] {
        std::printf("first frame after %lld ms\n", static_cast<long long>(clock.elapsed()));
        QCoreApplication::quit();
    };
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, report,
        static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection));
    const int status = QCoreApplication::exec();
    QFile memory(QStringLiteral("/proc/self/status"));
    if (memory.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = memory.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmRSS")) {
                std::printf("%s\n", line.constData());
            }
        }
    }
    return status;
}
