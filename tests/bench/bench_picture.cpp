// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the latency from the last byte of a reading on the line to the end of the frame that
// shows it: at the pace of the instrument, or, with --moving, faster, while the digits of the
// reading before still move. Requires a display:
//
//   tests/with-display build/release/tests/bench/bench_picture [--moving]
#include "terminal.h"

#include "framenumber.h"
#include "profile.h"
#include "pseudoterminal.h"

#include <QApplication>
#include <QDir>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kSettleMs = 8000; // the animations of the start
constexpr int kReadings = 100;

// From one reading to the next, ms; the random part avoids the pace of the frames.
struct Pauses
{
    int shortest;
    int longest;
};
constexpr Pauses kOfTheInstrument{950, 1050};
constexpr Pauses kMoving{150, 350}; // the digits of the reading before still move

using Clock = std::chrono::steady_clock;

enum class State { Idle, OnTheLine, Shown, InFrame };

} // namespace

int main(int argc, char *argv[])
{
    const QTemporaryDir folder;
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    const bool moving = application.arguments().contains(QStringLiteral("--moving"));
    const Pauses pauses = moving ? kMoving : kOfTheInstrument;
    ork2::PseudoTerminal line;
    if (!line.open()) {
        std::fprintf(stderr, "No pseudo-terminal: %s\n", qPrintable(line.errorString()));
        return 1;
    }
    profile::store(ork2::kPortToShow, line.path());
    profile::store(ork2::kNamePath, folder.path() + QDir::separator());
    ork2::Terminal terminal(application, QUrl(QStringLiteral("qrc:/main")));
    auto *window = qobject_cast<QQuickWindow *>(terminal.engine().rootObjects().value(0));
    if (window == nullptr) {
        std::fprintf(stderr, "The main document did not load\n");
        return 1;
    }
    window->findChild<QObject *>(QStringLiteral("startButton"))->setProperty("checked", true);

    std::atomic<State> state = State::Idle;
    Clock::time_point sent;
    std::vector<double> milliseconds;
    QObject::connect(&terminal.backEnd(), &mainBackEnd::secondCloudAlt, window, [&state] {
        if (state == State::OnTheLine) {
            state = State::Shown;
        }
    });
    QObject::connect(
        window, &QQuickWindow::afterSynchronizing, window,
        [&state] {
            if (state == State::Shown) {
                state = State::InFrame;
            }
        },
        Qt::DirectConnection);
    QTimer next;
    next.setSingleShot(true);
    QObject::connect(
        window, &QQuickWindow::afterFrameEnd, window,
        [&] {
            if (state == State::InFrame) {
                milliseconds.push_back(
                    std::chrono::duration<double, std::milli>(Clock::now() - sent).count());
                state = State::Idle;
                QMetaObject::invokeMethod(&next, qOverload<>(&QTimer::start));
            }
        },
        Qt::DirectConnection);
    QObject::connect(&next, &QTimer::timeout, window, [&] {
        if (milliseconds.size() == kReadings) {
            QCoreApplication::quit();
            return;
        }
        next.setInterval(QRandomGenerator::global()->bounded(pauses.shortest, pauses.longest));
        sent = Clock::now();
        state = State::OnTheLine;
        const QByteArray frame = frameNumber(static_cast<int>(milliseconds.size()));
        if (line.write(frame) != frame.size()) {
            std::fprintf(stderr, "The frame could not be written\n");
            QCoreApplication::exit(1);
        }
    });
    next.start(kSettleMs);
    const int status = QCoreApplication::exec();
    if (status != 0) {
        std::_Exit(status);
    }

    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("from byte to picture, %d readings: median %.0f ms, longest %.0f ms\n", kReadings,
        milliseconds.at(kReadings / 2), milliseconds.back());
    std::fflush(nullptr);
    std::_Exit(status);
}
