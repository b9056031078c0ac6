// SPDX-License-Identifier: GPL-3.0-or-later
// Opens a year in the real window of the archive and drags it; then follows today. Prints medians.
// Creates its own year of day files, 525,600 lines. With gnuplot installed, the same files are
// plotted by it in the same run.
// Usage: tests/with-display build/release/tests/bench/bench_archivewindow [SECONDS OF FOLLOWING]
#include "archivechart.h"
#include "archivesettings.h"
#include "archivewindow.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <cmath>
#include <ctime>

using namespace ork2;

namespace {

constexpr int kRuns = 3;
constexpr int kFrames = 150;
constexpr int kDayMinutes = 1440;
constexpr int kDays = 365;
constexpr int kWaitMs = 60000;
constexpr int kFollowSeconds = 60;

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + qsizetype(values.size() / 2), values.end());
    return values[values.size() / 2];
}

QByteArray line(int minute, int count)
{
    const double wave = std::sin(count / 400.0) + 0.4 * std::sin(count / 37.0);
    const int first = int(700 + 450 * wave);
    const bool isClear = count % 9000 > 8000;
    const QByteArray height = isClear ? "----" : QByteArray::number(first).rightJustified(4, '0');
    const QByteArray second = isClear || count % 900 > 600
        ? "----"
        : QByteArray::number(first * 2 + count % 97).rightJustified(4, '0');
    return "\r\n" + QTime(0, 0).addSecs(minute * 60).toString().toLatin1() + '\t' + height + '\t'
        + second + "\tОсновной";
}

void append(const QString &folder, QDate date, const QByteArray &text)
{
    QFile file(folder + QStringLiteral("/%1.txt").arg(date.toString(QStringLiteral("yyyy.MM.dd"))));
    if (!file.open(QIODevice::Append) || file.write(text) != text.size()) {
        qFatal("the day files cannot be written");
    }
}

void createYear(const QString &folder, QDate first)
{
    QDir().mkpath(folder);
    for (int day = 0; day < kDays; ++day) {
        QByteArray text;
        for (int minute = 0; minute < kDayMinutes; ++minute) {
            text += line(minute, day * kDayMinutes + minute);
        }
        append(folder, first.addDays(day), text);
    }
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6 : 0;
}

QAction *actionOf(const QMainWindow &window, const QString &text)
{
    for (QAction *action : window.findChildren<QAction *>()) {
        if (QString(action->text()).remove(u'&') == text) {
            return action;
        }
    }
    qFatal("no such action");
}

// Milliseconds from the choice of a year to its picture on the screen.
double openYear(ArchiveWindow &window, const QString &folder)
{
    auto *chart = window.findChild<ArchiveChart *>();
    window.start(folder);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) {
        qFatal("the window is not shown");
    }
    auto *loader = window.findChild<HistoryLoader *>();
    if (!QTest::qWaitFor([&] { return !loader->isLoading(); }, kWaitMs)) {
        qFatal("the first day is not loaded");
    }
    QTest::qWait(2 * kUpdateDelayMs);
    QSignalSpy loaded(loader, &HistoryLoader::loaded);
    QElapsedTimer timer;
    timer.start();
    actionOf(window, QStringLiteral("Год"))->trigger();
    if (!QTest::qWaitFor([&] { return !loaded.isEmpty(); }, kWaitMs)) {
        qFatal("the year is not loaded");
    }
    // Draws it once more if the window has done so.
    chart->replot(QCustomPlot::rpImmediateRefresh);
    QCoreApplication::processEvents();
    if (chart->history().days().size() != kDays) {
        qFatal("the year is not complete");
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

// Frames per second while the year is dragged by the mouse.
double dragYear(ArchiveWindow &window)
{
    auto *chart = window.findChild<ArchiveChart *>();
    const QPoint start = chart->rect().center();
    QEventLoop untilDrawn;
    QObject::connect(
        chart, &QCustomPlot::afterReplot, &untilDrawn, &QEventLoop::quit, Qt::QueuedConnection);
    QTimer deadline;
    QObject::connect(&deadline, &QTimer::timeout, chart, [] { qFatal("the range does not move"); });
    deadline.start(kWaitMs);
    QTest::mousePress(chart, Qt::LeftButton, {}, start);
    QElapsedTimer timer;
    timer.start();
    for (int step = 1; step <= kFrames; ++step) {
        const int shift = step < kFrames / 2 ? step : kFrames - step;
        QMouseEvent move(QEvent::MouseMove, start + QPointF(shift * 2, 0),
            chart->mapToGlobal(start + QPointF(shift * 2, 0)), Qt::NoButton, Qt::LeftButton,
            Qt::NoModifier);
        QCoreApplication::sendEvent(chart, &move);
        untilDrawn.exec();
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    QTest::mouseRelease(chart, Qt::LeftButton, {}, start);
    return kFrames / seconds;
}

double savePicture(ArchiveWindow &window, const QString &fileName)
{
    QElapsedTimer timer;
    timer.start();
    if (!window.saveRange(fileName).isEmpty()) {
        qFatal("the picture is not saved");
    }
    return double(timer.nsecsElapsed()) / 1e6;
}

// Part of a core that is used while today's file grows by a line in the middle of the time.
double follow(ArchiveWindow &window, const QString &folder, int seconds)
{
    window.setPeriod(Period::Day);
    window.setFollowing(true);
    QTest::qWait(3 * kClockMs);
    const std::clock_t start = std::clock();
    QTest::qWait(seconds * 500);
    append(folder, QDate::currentDate(), line(kDayMinutes - 1, 0));
    QTest::qWait(seconds * 500);
    return double(std::clock() - start) / CLOCKS_PER_SEC / seconds;
}

// Milliseconds of gnuplot for the same files; negative if it is not installed.
double plotBeside(const QString &folder)
{
    const QString script = QStringLiteral(
        "set terminal pngcairo size 1180,760; set output '/dev/null'; set xdata time;"
        "set timefmt '%Y.%m.%d %H:%M:%S'; set yrange [0:3000];"
        "plot '< cd \"%1\" && awk \"{ print substr(FILENAME, 1, 10), \\$0 }\" *.txt'"
        " using 1:3 with dots, '' using 1:4 with dots")
                               .arg(folder);
    QProcess program;
    QElapsedTimer timer;
    timer.start();
    program.start(QStringLiteral("gnuplot"), {QStringLiteral("-e"), script});
    return program.waitForFinished(kWaitMs) && program.exitCode() == 0
        ? double(timer.nsecsElapsed()) / 1e6
        : -1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    archiveSettings().clear();
    const QTemporaryDir data;
    const QString folder = data.filePath(QStringLiteral("ORK-2 N17"));
    const QDate today = QDate::currentDate();
    createYear(folder, QDate(today.year() - 1, 1, 1));
    QTextStream out(stdout);
    std::vector<double> opening;
    std::vector<double> dragging;
    std::vector<double> saving;
    std::vector<double> beside;
    double memory = 0;
    for (int run = 0; run < kRuns; ++run) {
        ArchiveWindow window(QTimeZone::systemTimeZone());
        opening.push_back(openYear(window, data.path()));
        memory = std::max(memory, residentMegabytes());
        dragging.push_back(dragYear(window));
        saving.push_back(savePicture(window, data.filePath(QStringLiteral("year.png"))));
        beside.push_back(plotBeside(folder));
    }
    out << "from «Год» to its picture: " << median(opening) << " ms\n"
        << "dragging the year: " << median(dragging) << " frames per second\n"
        << "memory with the year open: " << memory << " MB\n"
        << "saving the year as PNG: " << median(saving) << " ms\n"
        << "gnuplot, the same files: " << median(beside) << " ms\n";
    out.flush();
    append(folder, today, line(0, 0));
    ArchiveWindow window(QTimeZone::systemTimeZone());
    window.start(data.path());
    window.show();
    const int seconds = argc > 1 ? QByteArray(argv[1]).toInt() : kFollowSeconds;
    std::vector<double> following;
    for (int run = 0; run < kRuns; ++run) {
        following.push_back(follow(window, folder, seconds));
    }
    out << "following today: " << median(following) * 100 << " % of a core\n";
    return 0;
}
