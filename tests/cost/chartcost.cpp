// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the cost of the windows during a measurement with one reading per second:
//
//   tests/with-display build/release/tests/cost/ork2-chartcost [--points N] [--range SECONDS]
//       [--seconds S] [--varying] [--errors] [--idle] [--panel] [--grab FILE]
//
// Both series get N (60) points, 10 s apart, up to the current time. Then the start button is
// pressed and a measurement is simulated for S (60) seconds: a reading every second, a plotted
// point every 10 s. The heights are constant, change with each reading (--varying: the displays are
// animated), or are error codes (--errors: the banner is animated). The time window is 600, 3600 or
// 10800 seconds. --idle does not start the measurement; --panel also shows the control panel.
// Prints one line: CPU seconds per minute, frames of the visible windows, longest frame, longest
// stall of the GUI thread, wake-ups of all threads per second, resident memory. The first eight
// seconds, with the animations of the start, are ignored. --grab saves a screenshot of the window
// at the end.
#include "frames.h"
#include "mainbackend.h"
#include "sharedvalues.h"
#include "terminal.h"
#include "uidata.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <sys/resource.h>

namespace {

constexpr int kSettleMs = 8000;
constexpr int kStallProbeMs = 5;
constexpr int kAnsweringButNotRecorded = 6; // seconds without a frame

double processorSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Returns how often threads of this process went to sleep and were woken up.
qint64 wakeUps()
{
    qint64 sum = 0;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    const QStringList threads = tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        QFile file(tasks.filePath(thread + QStringLiteral("/status")));
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray status = file.readAll();
        const QByteArray key = "\nvoluntary_ctxt_switches:";
        const auto at = status.indexOf(key) + key.size();
        sum += status.mid(at, status.indexOf('\n', at) - at).trimmed().toLongLong();
    }
    return sum;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    constexpr double kPagesPerMegabyte = 256;
    return file.readAll().split(' ').value(1).toDouble() / kPagesPerMegabyte;
}

// Heights that vary like a cloud base, so that dots are next to each other and overlap.
double firstHeight(qint64 index)
{
    return 1500 + 300 * std::sin(static_cast<double>(index) / 37);
}

double secondHeight(qint64 index)
{
    return 2300 + 400 * std::sin(static_cast<double>(index) / 53);
}

void fill(QScatterSeries &first, QScatterSeries &second, int points)
{
    QList<QPointF> firstPoints;
    QList<QPointF> secondPoints;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    for (int i = 0; i < points; ++i) {
        const auto time = static_cast<double>(now - qint64(points - i) * ork2::kPlotIntervalMs);
        firstPoints << QPointF(time, firstHeight(i));
        secondPoints << QPointF(time, secondHeight(i));
    }
    first.replace(firstPoints);
    second.replace(secondPoints);
}

void keepQuiet(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg && type != QtInfoMsg) {
        QTextStream(stderr) << text << '\n';
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir profile; // the user's settings may contain a port that is in use
    qputenv("XDG_CONFIG_HOME", profile.path().toLocal8Bit());
    qInstallMessageHandler(keepQuiet);
    QApplication app(argc, argv);

    QCommandLineParser parser;
    const QCommandLineOption pointsOption(
        QStringLiteral("points"), QString(), QStringLiteral("count"), QStringLiteral("60"));
    const QCommandLineOption rangeOption(
        QStringLiteral("range"), QString(), QStringLiteral("seconds"), QStringLiteral("600"));
    const QCommandLineOption secondsOption(
        QStringLiteral("seconds"), QString(), QStringLiteral("count"), QStringLiteral("60"));
    const QCommandLineOption grabOption(
        QStringLiteral("grab"), QString(), QStringLiteral("file"), QString());
    const QCommandLineOption varyingOption(QStringLiteral("varying"));
    const QCommandLineOption errorsOption(QStringLiteral("errors"));
    const QCommandLineOption idleOption(QStringLiteral("idle"));
    const QCommandLineOption panelOption(QStringLiteral("panel"));
    parser.addOptions({pointsOption, rangeOption, secondsOption, grabOption, varyingOption,
        errorsOption, idleOption, panelOption});
    parser.process(app);
    const int points = parser.value(pointsOption).toInt();
    const int seconds = parser.value(secondsOption).toInt();

    ork2::Terminal terminal(app, QUrl(QStringLiteral("qrc:/main")));
    const QQmlApplicationEngine &engine = terminal.engine();
    mainBackEnd &backEnd = terminal.backEnd();
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (window == nullptr) {
        return 1;
    }
    constexpr int kRanges = 3;
    for (int i = 1; i < kRanges && backEnd.xMinRange() != parser.value(rangeOption).toInt(); ++i) {
        backEnd.changeRangeX();
    }
    const auto series = [&engine](const char *name) {
        return engine.rootContext()->contextProperty(QLatin1String(name)).value<UiData *>()->xy();
    };
    fill(*series("uiData"), *series("uiData2"), points);
    auto *startButton = window->findChild<QObject *>(QStringLiteral("startButton"));
    const bool idle = parser.isSet(idleOption);
    startButton->setProperty("checked", !idle);
    if (parser.isSet(panelOption)) {
        Q_EMIT backEnd.openControlPanel();
    }

    qint64 tick = points;
    QTimer readings;
    readings.setTimerType(Qt::PreciseTimer);
    readings.setInterval(1000);
    QObject::connect(&readings, &QTimer::timeout, &backEnd, [&] {
        tick += parser.isSet(varyingOption) ? 1 : 0;
        if (parser.isSet(errorsOption)) {
            const QString code = QString::number(ork2::kDataErrorCode);
            backEnd.showTheCloud(code, code);
        } else {
            backEnd.showTheCloud(QString::number(std::lround(firstHeight(tick))),
                QString::number(std::lround(secondHeight(tick))));
        }
        noReplyCounter.storeRelaxed(kAnsweringButNotRecorded);
    });
    if (!idle) {
        readings.start();
    }

    // Updated by the render threads of the windows.
    std::atomic<int> frames = 0;
    std::atomic<double> longestFrame = 0;
    double longestStall = 0;
    double startCost = 0;
    qint64 startWakeUps = 0;
    QElapsedTimer sinceProbe;
    const QList<QQuickWindow *> windows = {
        window, window->findChild<QQuickWindow *>(QStringLiteral("controlPanel"))};
    for (QQuickWindow *shown : windows) {
        const auto frameTime = std::make_shared<QElapsedTimer>();
        QObject::connect(
            shown, &QQuickWindow::beforeSynchronizing, window, [=] { frameTime->start(); },
            Qt::DirectConnection);
        QObject::connect(
            shown, &QQuickWindow::frameSwapped, window,
            [=, &frames, &longestFrame] {
                ++frames;
                longestFrame = std::max(
                    longestFrame.load(), static_cast<double>(frameTime->nsecsElapsed()) / 1e6);
            },
            Qt::DirectConnection);
    }
    qint64 probeTicks = 0; // each wakes up the process, which must not be counted
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    probe.setInterval(kStallProbeMs);
    QObject::connect(&probe, &QTimer::timeout, window, [&] {
        ++probeTicks;
        longestStall = std::max(
            longestStall, static_cast<double>(sinceProbe.nsecsElapsed()) / 1e6 - kStallProbeMs);
        sinceProbe.start();
    });
    QTimer::singleShot(kSettleMs, Qt::PreciseTimer, window, [&] {
        frames = 0;
        longestFrame = 0;
        sinceProbe.start();
        probe.start();
        startCost = processorSeconds();
        startWakeUps = wakeUps();
    });
    QTimer::singleShot(kSettleMs + 1000 * seconds, Qt::PreciseTimer, window, [&] {
        const double cost = processorSeconds() - startCost;
        const auto woken = static_cast<double>(wakeUps() - startWakeUps - probeTicks) / seconds;
        QTextStream(stdout) << (idle ? "idle  " : "measuring  ")
                            << (parser.isSet(panelOption) ? "control panel shown  " : "")
                            << "points " << points << "  range " << backEnd.xMinRange()
                            << " s  processor " << QString::number(cost * 60 / seconds, 'f', 1)
                            << " s/min  frames " << frames.load() << "  longest frame "
                            << QString::number(longestFrame, 'f', 0) << " ms  longest stall "
                            << QString::number(longestStall, 'f', 0) << " ms  wake-ups "
                            << QString::number(woken, 'f', 0) << "/s  memory "
                            << QString::number(residentMegabytes(), 'f', 0) << " MB\n";
        if (parser.isSet(grabOption)) {
            window->grabWindow().save(parser.value(grabOption));
        }
        app.quit();
    });
    return app.exec();
}
