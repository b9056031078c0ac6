// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the latency from the last byte on the line to the controller and to the displayed frame,
// with all windows shown, and checks that no reading is lost at 115200 baud and at maximum speed.
// Started by tests/endurance/hurry.
#include "framenumber.h"
#include "frames.h"
#include "mainbackendprobe.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "settingskeys.h"
#include "sharedvalues.h"
#include "terminal.h"
#include "uidata.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDateTime>
#include <QQmlContext>
#include <QQuickWindow>
#include <QScatterSeries>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr double kBitsInByte = 10; // including start and stop bit
constexpr int kBaud = 115200;
constexpr int kStallProbeMs = 5;
constexpr int kPauseBetweenFramesMs = 50;
constexpr int kTimeoutMs = 120000;
constexpr int kSettleMs = 6000; // until titles and grid have faded in

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

// Waits until the condition is true. Returns false after the timeout.
template <typename Condition> bool waitFor(const Condition &condition, int timeoutMs = kTimeoutMs)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(timeoutMs);
    QTimer wake;
    wake.start(kStallProbeMs);
    while (!condition()) {
        if (Clock::now() > end) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

void pause(int ms)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(ms);
    Q_UNUSED(waitFor([&] { return Clock::now() >= end; }))
}

void report(const char *what, std::vector<double> ms)
{
    if (ms.empty()) {
        std::printf("%s: none\n", what);
        return;
    }
    std::sort(ms.begin(), ms.end());
    const auto percentile = [&ms](double share) {
        return ms.at(static_cast<std::size_t>(share * static_cast<double>(ms.size() - 1)));
    };
    std::printf("%s: median %.3f ms, 99th percentile %.3f ms, longest %.3f ms (%zu)\n", what,
        percentile(0.5), percentile(0.99), percentile(1.0), ms.size());
}

// Measures the longest time during which the GUI thread did not process events.
class StallProbe
{
public:
    StallProbe()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout([this] {
            const Clock::time_point now = Clock::now();
            m_longest = std::max(m_longest, milliseconds(now - m_last) - kStallProbeMs);
            m_last = now;
        });
        m_timer.start(kStallProbeMs);
    }
    [[nodiscard]] double longest() const { return m_longest; }

private:
    QTimer m_timer;
    Clock::time_point m_last = Clock::now();
    double m_longest = 0;
};

class Hurry
{
public:
    Hurry(ork2::Terminal &terminal, ork2::PseudoTerminal &line);

    [[nodiscard]] bool start();
    void fill(int points);
    [[nodiscard]] bool latency(int frames);
    // rate: maximum number of frames per second; 0: no limit.
    [[nodiscard]] bool throughput(int frames, double rate, const char *name);

private:
    ork2::Terminal &m_terminal;
    ork2::PseudoTerminal &m_line;
    QQuickWindow *m_window;
    int m_received = 0;
    int m_wrong = 0;
    Clock::time_point m_arrival;
    bool m_open = false;
    std::mutex m_lock;
    Clock::time_point m_synchronized; // protected by m_lock, as is m_swapped
    Clock::time_point m_swapped;
    int m_expected = 0;
};

Hurry::Hurry(ork2::Terminal &terminal, ork2::PseudoTerminal &line)
    : m_terminal(terminal)
    , m_line(line)
    , m_window(qobject_cast<QQuickWindow *>(terminal.engine().rootObjects().value(0)))
{
    QObject::connect(
        &terminal.backEnd(), &mainBackEnd::firstCloudAlt, m_window, [this](const QString &height) {
            m_arrival = Clock::now();
            m_wrong += height.toInt() == firstHeight(m_expected) ? 0 : 1;
            ++m_expected;
            ++m_received;
        });
    QObject::connect(&terminal.backEnd(), &mainBackEnd::sendCounter, m_window,
        [this](const QString &text) { m_open |= text.contains(QStringLiteral("Открыт")); });
    QObject::connect(
        m_window, &QQuickWindow::afterSynchronizing, m_window,
        [this] {
            const std::lock_guard<std::mutex> guard(m_lock);
            m_synchronized = Clock::now();
        },
        Qt::DirectConnection);
    QObject::connect(
        m_window, &QQuickWindow::frameSwapped, m_window,
        [this] {
            const std::lock_guard<std::mutex> guard(m_lock);
            // A frame shows the state at the time of its synchronization.
            m_swapped = m_synchronized;
        },
        Qt::DirectConnection);
}

bool Hurry::start()
{
    for (const char *name :
        {"sWindow", "numberWindow", "aboutWindow", "sqlSettingsWnd", "controlPanel"}) {
        m_window->findChild<QQuickWindow *>(QString::fromLatin1(name))->show();
    }
    currentPortName = m_line.path();
    m_window->findChild<QObject *>(QStringLiteral("startButton"))->setProperty("checked", true);
    return waitFor([this] { return m_open; });
}

void Hurry::fill(int points)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    int layer = 0;
    for (const char *name : {"uiData", "uiData2"}) {
        QList<QPointF> list;
        for (int i = 0; i < points; ++i) {
            const qint64 time = now - qint64(points - i) * ork2::kPlotIntervalMs;
            list << QPointF(
                static_cast<double>(time), 1500 + layer * 500 + 300 * std::sin(i / 37.0));
        }
        const QVariant data =
            m_terminal.engine().rootContext()->contextProperty(QString::fromLatin1(name));
        data.value<UiData *>()->xy()->replace(list);
        ++layer;
    }
    for (int i = 0; i < 2; ++i) {
        m_terminal.backEnd().changeRangeX(); // to three hours
    }
    pause(kSettleMs);
}

bool Hurry::latency(int frames)
{
    std::vector<double> toController;
    std::vector<double> toPicture;
    const StallProbe probe;
    for (int i = 0; i < frames; ++i) {
        const int before = m_received;
        m_expected = i;
        const Clock::time_point sent = Clock::now();
        if (m_line.write(frameNumber(i)) != frameNumber(i).size()
            || !waitFor([&] { return m_received > before; })) {
            std::printf("frame %d did not arrive\n", i);
            return false;
        }
        toController.push_back(milliseconds(m_arrival - sent));
        Clock::time_point shown;
        const bool seen = waitFor([&] {
            shown = Clock::now();
            const std::lock_guard<std::mutex> guard(m_lock);
            return m_swapped > m_arrival;
        });
        if (!seen) {
            std::printf("frame %d was not shown\n", i);
            return false;
        }
        toPicture.push_back(milliseconds(shown - sent));
        pause(kPauseBetweenFramesMs);
    }
    report("to the controller", toController);
    report("to the displayed frame", toPicture);
    std::printf(
        "longest stall of the GUI thread: %.0f ms; wrong readings: %d\n", probe.longest(), m_wrong);
    return m_wrong == 0;
}

bool Hurry::throughput(int frames, double rate, const char *name)
{
    m_received = 0;
    m_wrong = 0;
    m_expected = 0;
    std::atomic<Clock::time_point> finished{Clock::time_point()};
    const StallProbe probe;
    const Clock::time_point begin = Clock::now();
    std::thread sender([&] {
        QByteArray pending;
        int created = 0;
        while (created < frames || !pending.isEmpty()) {
            const double due = rate > 0 ? milliseconds(Clock::now() - begin) / 1000 * rate : 1e9;
            while (pending.size() < 4000 && created < frames && created < due) {
                pending += frameNumber(created++);
            }
            const qsizetype written = pending.isEmpty() ? 0 : m_line.write(pending);
            if (written > 0) {
                pending.remove(0, written);
            } else {
                std::this_thread::sleep_for(std::chrono::microseconds(rate > 0 ? 200 : 20));
            }
        }
        finished = Clock::now();
    });
    const bool all =
        waitFor([&] { return m_received >= frames; }, kTimeoutMs + static_cast<int>(frames / 100));
    sender.join();
    const double seconds = milliseconds(m_arrival - begin) / 1000;
    std::printf("%s: %d of %d frames, %d wrong, %.0f frames per second, the last %.0f ms after its "
                "last byte; longest stall of the GUI thread %.0f ms\n",
        name, m_received, frames, m_wrong, m_received / seconds,
        milliseconds(m_arrival - finished.load()), probe.longest());
    std::fflush(stdout);
    return all && m_received == frames && m_wrong == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir profile; // the user's settings may contain a port that is in use
    qputenv("XDG_CONFIG_HOME", profile.path().toLocal8Bit());
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    QCommandLineParser parser;
    const QCommandLineOption pointsOption(
        QStringLiteral("points"), QString(), QStringLiteral("count"), QStringLiteral("10300"));
    const QCommandLineOption framesOption(
        QStringLiteral("frames"), QString(), QStringLiteral("count"), QStringLiteral("200"));
    const QCommandLineOption secondsOption(
        QStringLiteral("seconds"), QString(), QStringLiteral("count"), QStringLiteral("60"));
    const QCommandLineOption flatOutOption(
        QStringLiteral("flat-out"), QString(), QStringLiteral("frames"), QStringLiteral("200000"));
    parser.addOptions({pointsOption, framesOption, secondsOption, flatOutOption});
    parser.process(application);

    ork2::PseudoTerminal line;
    if (!line.open()) {
        std::fprintf(stderr, "No pseudo-terminal: %s\n", qPrintable(line.errorString()));
        return 1;
    }
    bool good = false;
    {
        ork2::Terminal terminal(application, QUrl(QStringLiteral("qrc:/main")));
        Hurry hurry(terminal, line);
        good = hurry.start();
        hurry.fill(parser.value(pointsOption).toInt());
        good = good && hurry.latency(parser.value(framesOption).toInt());
        const double rate = kBaud / kBitsInByte / 11;
        const int paced = static_cast<int>(parser.value(secondsOption).toInt() * rate);
        good = hurry.throughput(paced, rate, "115200 baud") && good;
        good = hurry.throughput(parser.value(flatOutOption).toInt(), 0, "maximum speed") && good;
        std::printf("%s\n", good ? "No reading was lost" : "**BAD**");
        std::fflush(stdout);
    }
    std::_Exit(good ? 0 : 1); // the worker thread is still running
}
