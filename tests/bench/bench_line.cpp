// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the latency of single frames and the throughput of continuous frames, from the last byte
// on the line to the controller, including worker, event queue and parser.
#include "mainbackend.h"

#include "framenumber.h"
#include "frames.h"
#include "mainbackendprobe.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

constexpr int kLatencyFrames = 2000;
constexpr int kThroughputFrames = 200000;

using Clock = std::chrono::steady_clock;

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir profile;
    qputenv("XDG_CONFIG_HOME", profile.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Logging takes longer than the processing itself, so it is disabled.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QGuiApplication application(argc, argv);
    ork2::PseudoTerminal line;
    if (!line.open()) {
        std::fprintf(stderr, "No pseudo-terminal: %s\n", qPrintable(line.errorString()));
        return 1;
    }
    mainBackEnd backEnd;
    MainBackEndProbe probe(backEnd);
    int received = 0;
    Clock::time_point arrival;
    QEventLoop loop;
    int awaited = 0;
    QObject::connect(&backEnd, &mainBackEnd::firstCloudAlt, &backEnd, [&] {
        arrival = Clock::now();
        if (++received == awaited) {
            loop.quit();
        }
    });
    currentPortName = line.path();
    QObject::connect(probe.comPort(), &ComPort::error_, &loop, &QEventLoop::quit);
    backEnd.enButton();
    loop.exec(); // until the port reports that it is open

    std::vector<double> microseconds;
    for (int i = 0; i < kLatencyFrames; ++i) {
        awaited = received + 1;
        const QByteArray frame = frameNumber(i);
        const Clock::time_point sent = Clock::now();
        if (line.write(frame) != frame.size()) {
            std::fprintf(stderr, "The frame could not be written\n");
            return 1;
        }
        loop.exec();
        microseconds.push_back(std::chrono::duration<double, std::micro>(arrival - sent).count());
    }
    std::sort(microseconds.begin(), microseconds.end());
    const auto percentile = [&microseconds](double share) {
        return microseconds.at(static_cast<std::size_t>(share * (kLatencyFrames - 1)));
    };
    std::printf("latency of %d frames: median %.0f us, 99th percentile %.0f us, longest %.0f us\n",
        kLatencyFrames, percentile(0.5), percentile(0.99), percentile(1.0));

    received = 0;
    awaited = kThroughputFrames;
    std::thread sender([&line] {
        QByteArray pending;
        for (int i = 0; i < kThroughputFrames || !pending.isEmpty();) {
            while (pending.size() < 4000 && i < kThroughputFrames) {
                pending += frameNumber(i++);
            }
            const qsizetype written = line.write(pending);
            if (written > 0) {
                pending.remove(0, written);
            } else {
                std::this_thread::yield();
            }
        }
    });
    const Clock::time_point start = Clock::now();
    loop.exec();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    sender.join();
    std::printf("throughput: %d of %d frames in %.2f s, %.0f frames a second\n", received,
        kThroughputFrames, seconds, received / seconds);
    probe.endWorker();
    return received == kThroughputFrames ? 0 : 1;
}
