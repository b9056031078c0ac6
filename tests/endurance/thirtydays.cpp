// SPDX-License-Identifier: GPL-3.0-or-later
// Runs weeks of measurement with a simulated clock: the object graph of the program, a real line,
// real day files and optionally the real QML document. Each second has its reading and its ticks,
// in the order and at the times of the timers; only the waiting in between is omitted. Prints
// measurements. Started by tests/endurance/thirty-days, which checks the day files.
#include "documentitem.h"
#include "frames.h"
#include "mainbackendprobe.h"
#include "minutetick.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "seededrandom.h"
#include "settingskeys.h"
#include "sharedvalues.h"
#include "startup.h"
#include "terminal.h"
#include "timewindow.h"
#include "uidata.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QScatterSeries>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace {

constexpr double kReadingIntervalMs =
    1000.37; // the clock of the instrument differs from that of the terminal
constexpr int kTypicalDelayMs = 40;
constexpr int kMaxStallMs = 450; // a longer stall may exceed second 0, so that its mark is lost
constexpr double kMeanMsBetweenStalls = 3.6e6;
constexpr int kTimeoutMs = 10000;
constexpr int kThinnedPoints = 2000;
constexpr int kFigurePeriodMinutes = 360;

std::atomic<qint64> g_logBytes{0};
std::atomic<int> g_warnings{0};
QDateTime g_now;

// Warnings of Qt about the platform "offscreen".
bool isKnown(const QString &text)
{
    return text.contains(u"systemTrayWindowChanged") || text.contains(u"propagateSizeHints");
}

void countLog(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    g_logBytes += text.toUtf8().size() + 1;
    if (type != QtDebugMsg && type != QtInfoMsg && !isKnown(text)) {
        ++g_warnings;
        std::fprintf(stderr, "%s\n", qPrintable(text));
    }
}

int residentKib()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const bool open = file.open(QIODevice::ReadOnly);
    const qint64 pages = open ? file.readAll().split(' ').value(1).toLongLong() : 0;
    return static_cast<int>(pages * sysconf(_SC_PAGESIZE) / 1024);
}

qsizetype entries(const char *folder)
{
    return QDir(QString::fromLatin1(folder))
        .entryList(QDir::AllEntries | QDir::NoDotAndDotDot)
        .size();
}

struct Plan
{
    QDateTime start;
    double days = 0;
    double slew = 0;                    // deviation of the clock from the timers
    unsigned long pauseMs = 0;          // after each line
    QList<QPair<double, qint64>> steps; // clock changes: minutes after the start, seconds
};

// Schedules the ticks of the timers and the readings on a common time line, in milliseconds.
class Weeks
{
public:
    Weeks(
        mainBackEnd &backEnd, QList<QScatterSeries *> series, ork2::PseudoTerminal &line, Plan plan)
        : m_backEnd(backEnd)
        , m_probe(m_backEnd)
        , m_line(line)
        , m_plan(std::move(plan))
        , m_series(std::move(series))
    {
        QObject::connect(
            &m_backEnd, &mainBackEnd::secondCloudAlt, &m_backEnd, [this] { ++m_shown; });
        QObject::connect(
            &m_backEnd, &mainBackEnd::clearGraphData, &m_backEnd, [this] { ++m_thinnings; });
        QObject::connect(&m_backEnd, &mainBackEnd::timeToData, &m_backEnd, [this] { ++m_marks; });
    }

    [[nodiscard]] bool run();

private:
    [[nodiscard]] QDateTime wall(double ms) const
    {
        return m_plan.start.addMSecs(m_steppedMs + static_cast<qint64>(ms * (1.0 + m_plan.slew)));
    }
    // Returns the time at which a tick is handled.
    double handledAt(double due)
    {
        int late = m_random.between(0, kTypicalDelayMs);
        if (due >= m_nextStall) {
            m_nextStall = due + kMeanMsBetweenStalls * m_random.between(50, 150) / 100.0;
            late = m_random.between(kTypicalDelayMs, kMaxStallMs);
        }
        m_busyUntil = std::max(m_busyUntil, due + late);
        return m_busyUntil;
    }
    [[nodiscard]] bool start();
    [[nodiscard]] bool send(double ms);
    void figures(double ms);
    [[nodiscard]] bool chartIsValid() const;

    mainBackEnd &m_backEnd;
    MainBackEndProbe m_probe;
    ork2::PseudoTerminal &m_line;
    Plan m_plan;
    QList<QScatterSeries *> m_series;
    ork2::SeededRandom m_random{1};
    qint64 m_steppedMs = 0;
    double m_busyUntil = 0;
    double m_nextStall = kMeanMsBetweenStalls;
    qint64 m_shown = 0;
    qint64 m_marks = 0;
    qint64 m_marksPaced = 0;
    int m_thinnings = 0;
};

bool Weeks::start()
{
    g_now = wall(0);
    m_probe.setClock([] { return g_now; });
    bool open = false;
    QObject::connect(&m_backEnd, &mainBackEnd::sendCounter, &m_backEnd,
        [&open](const QString &text) { open = open || text.contains(QStringLiteral("Открыт")); });
    m_backEnd.enButton();
    // The timers remain active for the program, but the ticks are called by this test.
    for (QTimer *timer : {m_probe.requestTimer(), m_probe.saveTimer(), m_probe.plotTimer()}) {
        timer->blockSignals(true);
    }
    QElapsedTimer timer;
    timer.start();
    while (!open && timer.elapsed() < kTimeoutMs) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return open;
}

bool Weeks::send(double ms)
{
    const double phase = ms / 7.2e6;
    const int first = 1200 + static_cast<int>(std::lround(800 * std::sin(phase)));
    const auto channel = m_shown / 600 % 2 == 0 ? ork2::Channel::Main : ork2::Channel::Reserve;
    const QByteArray frame = ork2::readingFrame({channel, first, first + 700});
    const qint64 before = m_shown;
    if (m_line.write(frame) != frame.size()) {
        return false;
    }
    QElapsedTimer timer;
    timer.start();
    while (m_shown == before && timer.elapsed() < kTimeoutMs) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    // Otherwise done by exec() only.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return m_shown > before;
}

void Weeks::figures(double ms)
{
    std::printf("figures minutes=%.0f rss=%d threads=%lld files=%lld points=%lld,%lld thinnings=%d "
                "log=%lld\n",
        ms / 60000.0, residentKib(), static_cast<long long>(entries("/proc/self/task")),
        static_cast<long long>(entries("/proc/self/fd")),
        static_cast<long long>(m_series.at(0)->count()),
        static_cast<long long>(m_series.at(1)->count()), m_thinnings,
        static_cast<long long>(g_logBytes.load()));
    std::fflush(stdout);
}

// Checks that the last point is that of the last plot tick, and that no series exceeds its limit.
bool Weeks::chartIsValid() const
{
    for (const QScatterSeries *series : m_series) {
        if (series->count() > ork2::kSeriesCapacity) {
            std::printf("bad series of %lld points\n", static_cast<long long>(series->count()));
            return false;
        }
        const double newest = series->at(static_cast<int>(series->count()) - 1).x();
        if (newest != static_cast<double>(g_now.toMSecsSinceEpoch())) {
            std::printf("bad newest point %.0f\n", newest);
            return false;
        }
    }
    return true;
}

bool Weeks::run()
{
    if (!start()) {
        std::printf("bad the port was not opened\n");
        return false;
    }
    const double end = m_plan.days * 86.4e6;
    double reading = 130;
    double request = ork2::kRequestIntervalMs;
    double save = ork2::kSaveIntervalMs;
    double plot = ork2::kPlotIntervalMs;
    double figure = 0;
    while (true) {
        const double next = std::min({reading, request, save, plot});
        if (next >= end) {
            break;
        }
        if (!m_plan.steps.isEmpty() && next >= m_plan.steps.constFirst().first * 60000.0) {
            m_steppedMs += m_plan.steps.takeFirst().second * 1000;
        }
        if (next == reading) {
            g_now = wall(std::max(next, m_busyUntil));
            if (!send(next)) {
                std::printf("bad a reading was not shown after %.0f minutes\n", next / 60000.0);
                return false;
            }
            reading += kReadingIntervalMs;
            continue;
        }
        const double now = handledAt(next);
        g_now = wall(now);
        if (next == request) {
            m_probe.tickWatchdog();
            request += ork2::kRequestIntervalMs;
        } else if (next == plot) {
            m_probe.tickPlot();
            plot += ork2::kPlotIntervalMs;
            if (!chartIsValid()) {
                return false;
            }
        } else {
            m_probe.tickSave();
            if (m_marks > m_marksPaced) {
                m_marksPaced = m_marks;
                QThread::msleep(m_plan.pauseMs);
            }
            save = now + m_probe.saveTimer()->interval();
        }
        if (next >= figure) {
            figures(next);
            figure += kFigurePeriodMinutes * 60000.0;
        }
    }
    figures(end);
    m_backEnd.disableButton();
    std::printf("end marks=%lld readings=%lld warnings=%d last=%s\n",
        static_cast<long long>(m_marks), static_cast<long long>(m_shown), g_warnings.load(),
        qPrintable(wall(end).toUTC().toString(Qt::ISODate)));
    m_probe.endWorker();
    return g_warnings.load() == 0;
}

// Uses the widest time window, which moves least often; other tests check the drawing.
bool withDocument(QApplication &application, ork2::PseudoTerminal &line, const Plan &plan)
{
    ork2::Terminal terminal(application, QUrl(QStringLiteral("qrc:/main")));
    QObject *root = terminal.engine().rootObjects().value(0);
    if (root == nullptr) {
        return false;
    }
    root->setProperty("visible", false);
    while (terminal.backEnd().xMinRange() != ork2::kThreeHours) {
        terminal.backEnd().changeRangeX();
    }
    const auto series = [root](const char *id) {
        return qobject_cast<QScatterSeries *>(documentItem(*root, id));
    };
    return Weeks(
        terminal.backEnd(), {series("fLayerCloudSeries"), series("sLayerCloudSeries")}, line, plan)
        .run();
}

// Uses series without a document and thins them in the same way.
bool withoutDocument(ork2::PseudoTerminal &line, const Plan &plan)
{
    mainBackEnd backEnd;
    QScatterSeries firstSeries;
    QScatterSeries secondSeries;
    UiData first;
    UiData second;
    first.setXy(&firstSeries);
    second.setXy(&secondSeries);
    ork2::connectCharts(backEnd, first, second);
    QObject::connect(&backEnd, &mainBackEnd::clearGraphData, &backEnd, [&] {
        firstSeries.removePoints(0, kThinnedPoints);
        secondSeries.removePoints(0, kThinnedPoints);
    });
    return Weeks(backEnd, {&firstSeries, &secondSeries}, line, plan).run();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("start"), QStringLiteral("Local time of the start."),
            QStringLiteral("TIME"), QStringLiteral("2024-02-28T23:49:30")},
        {QStringLiteral("days"), QStringLiteral("Number of days."), QStringLiteral("N"),
            QStringLiteral("33")},
        {QStringLiteral("ppm"), QStringLiteral("Deviation of the clock from the timers."),
            QStringLiteral("N"), QStringLiteral("0")},
        {QStringLiteral("step"), QStringLiteral("Change the clock by SECONDS after MINUTES."),
            QStringLiteral("MINUTES:SECONDS")},
        {QStringLiteral("pause"), QStringLiteral("Wait after each line."), QStringLiteral("MS"),
            QStringLiteral("0")},
        {QStringLiteral("data"), QStringLiteral("Folder of the day files."),
            QStringLiteral("FOLDER")},
        {QStringLiteral("document"), QStringLiteral("Load the QML documents, in a hidden window.")},
    });
    parser.process(application);
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME") || !parser.isSet(QStringLiteral("data"))) {
        qFatal("Start this through tests/endurance/thirty-days, which creates a separate settings "
               "store");
    }
    qInstallMessageHandler(countLog);

    ork2::PseudoTerminal line;
    if (!line.open()) {
        qFatal("no pseudo-terminal: %s", qPrintable(line.errorString()));
    }
    {
        QSettings store = ork2::settingsStore();
        ork2::storeText(store, ork2::kNamePath, parser.value(QStringLiteral("data")));
        ork2::storeText(store, ork2::kUnitNumber, QStringLiteral("17"));
        ork2::storeText(store, ork2::kPortToShow, line.path());
    }
    Plan plan;
    plan.start = QDateTime::fromString(parser.value(QStringLiteral("start")), Qt::ISODate);
    plan.days = parser.value(QStringLiteral("days")).toDouble();
    plan.pauseMs = parser.value(QStringLiteral("pause")).toULong();
    plan.slew = parser.value(QStringLiteral("ppm")).toDouble() * 1e-6;
    const QStringList steps = parser.values(QStringLiteral("step"));
    for (const QString &step : steps) {
        plan.steps << qMakePair(
            step.section(u':', 0, 0).toDouble(), step.section(u':', 1, 1).toLongLong());
    }

    const bool document = parser.isSet(QStringLiteral("document"));
    const bool good =
        document ? withDocument(application, line, plan) : withoutDocument(line, plan);
    std::fflush(nullptr);
    std::_Exit(good ? 0 : 1);
}
