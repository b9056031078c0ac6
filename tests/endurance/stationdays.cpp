// SPDX-License-Identifier: GPL-3.0-or-later
// Runs days of unattended measurement with a simulated clock: the recorder's station, a real line,
// real day files. Each second has its reading and its ticks; only the waiting in between is
// omitted. Events come from a file. May be killed at any time: the clock is in a shared file, and
// the next process continues there. Started by tests/endurance/recorder-days, which checks the
// files.
#include "portwatch.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "stationprobe.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <functional>

namespace {

constexpr int kTimeoutMs = 20000;
constexpr int kHangupMs = 5000;
constexpr int kWakeUpMs = 50;
constexpr int kSavePhaseMs = 300; // of the save tick within its second
constexpr int kHeights = 2800;

QDateTime g_now;

// A stretch of simulated time in which something is wrong.
struct Event
{
    enum class Kind { Unplugged, UnplugWatched, Silent, Full };
    Kind kind = Kind::Unplugged;
    qint64 begin = 0; // seconds since the start
    qint64 end = 0;
};

bool waitFor(const std::function<bool()> &condition, int timeoutMs)
{
    if (condition()) {
        return true;
    }
    QTimer wakeUp; // so that the time is checked even if nothing happens
    wakeUp.start(kWakeUpMs);
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > timeoutMs) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

class Days
{
public:
    Days(const QString &folder, const QDateTime &start, QList<Event> events)
        : m_folder(folder)
        , m_start(start)
        , m_events(std::move(events))
        , m_station(folder + QStringLiteral("/port"), {folder + QStringLiteral("/disk"), 17})
        , m_probe(m_station)
    { }

    [[nodiscard]] bool run(qint64 first, qint64 end);

private:
    [[nodiscard]] bool during(Event::Kind kind, qint64 second) const;
    [[nodiscard]] bool changeLine(qint64 second);
    [[nodiscard]] bool plugIn(bool watched);
    [[nodiscard]] bool unplug();
    [[nodiscard]] bool settle();
    void changeDisk(bool full);
    [[nodiscard]] bool send(qint64 second);
    void report(qint64 second);

    QString m_folder;
    QDateTime m_start;
    QList<Event> m_events;
    ork2::PseudoTerminal m_line;
    ork2::PseudoTerminal m_neighbour; // takes the number of an unplugged adapter
    ork2::PortWatch m_portWatch;
    ork2::Station m_station;
    ork2::StationProbe m_probe;
    bool m_full = false;
    qint64 m_lastReading = -1000000;
    qint64 m_backSince = -1; // the line is back since this second, but there is no reading yet
};

bool Days::during(Event::Kind kind, qint64 second) const
{
    return std::any_of(m_events.cbegin(), m_events.cend(), [&](const Event &event) {
        return event.kind == kind && event.begin <= second && second < event.end;
    });
}

bool Days::settle()
{
    return waitFor([this] { return m_probe.isSettled(); }, kTimeoutMs);
}

bool Days::plugIn(bool watched)
{
    const QString link = m_folder + QStringLiteral("/port");
    if (!m_line.open()) {
        return false;
    }
    QObject::disconnect(&m_portWatch, nullptr, nullptr, nullptr);
    if (watched) {
        QObject::connect(
            &m_portWatch, &ork2::PortWatch::appeared, &m_station, &ork2::Station::openNow);
    }
    QFile::remove(link);
    return QFile::link(m_line.path(), link)
        && (!watched || waitFor([this] { return m_probe.isOpen(); }, kTimeoutMs)) && settle();
}

bool Days::unplug()
{
    const bool wasOpen = m_probe.isOpen();
    m_line.close();
    QFile::remove(m_folder + QStringLiteral("/port"));
    const bool closed = !wasOpen || waitFor([this] { return m_probe.isWaiting(); }, kHangupMs);
    return closed && m_neighbour.open();
}

bool Days::changeLine(qint64 second)
{
    const bool watched = during(Event::Kind::UnplugWatched, second - 1);
    const bool away =
        during(Event::Kind::Unplugged, second) || during(Event::Kind::UnplugWatched, second);
    if (away == !m_line.isOpen()) {
        return true;
    }
    if (away) {
        return unplug();
    }
    m_backSince = second;
    return plugIn(watched);
}

// Fills the disk, or removes what filled it.
void Days::changeDisk(bool full)
{
    if (full == m_full) {
        return;
    }
    m_full = full;
    QFile filler(m_folder + QStringLiteral("/disk/filler"));
    if (!full) {
        filler.remove();
    } else if (filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        for (const qsizetype size : {65536, 1024, 1}) {
            while (filler.write(QByteArray(size, 'x')) == size) { }
        }
    }
}

// Returns false if a reading was sent to an open port but did not arrive.
bool Days::send(qint64 second)
{
    const int height = 100 + static_cast<int>(second % kHeights);
    if (during(Event::Kind::Silent, second)) {
        m_backSince = second + 1;
        return true;
    }
    if (!m_line.isOpen() || !m_probe.isOpen()) {
        return true;
    }
    const QByteArray frame = ork2::readingFrame({ork2::Channel::Main, height, height + 50});
    if (m_line.write(frame) != frame.size()) {
        return false;
    }
    const bool received =
        waitFor([this] { return m_station.lastReading() && m_station.lastReading()->at == g_now; },
            kTimeoutMs);
    if (received) {
        m_lastReading = second;
    }
    if (received && m_backSince >= 0) {
        std::printf("back %lld %lld\n", static_cast<long long>(m_backSince),
            static_cast<long long>(second));
        m_backSince = -1;
    }
    return received;
}

void Days::report(qint64 second)
{
    if (g_now.time().second() == 0) {
        std::printf("mark %lld %lld %d\n", static_cast<long long>(second),
            static_cast<long long>(second - m_lastReading), m_full ? 1 : 0);
        std::fflush(stdout);
    }
}

bool Days::run(qint64 first, qint64 end)
{
    g_now = m_start.addSecs(first);
    m_probe.setClock([] { return g_now; });
    m_portWatch.watch(m_folder + QStringLiteral("/port"));
    QFile::remove(m_folder + QStringLiteral("/port"));
    QFile::remove(m_folder + QStringLiteral("/disk/filler"));
    if (!m_neighbour.open()) {
        return false;
    }
    QFile clock(m_folder + QStringLiteral("/clock"));
    if (!clock.open(QIODevice::ReadWrite) || !clock.resize(sizeof(qint64))) {
        return false;
    }
    auto *shared = reinterpret_cast<qint64 *>(clock.map(0, sizeof(qint64)));
    m_station.start();
    m_probe.stopTimers();
    bool good = settle();
    for (qint64 second = first; good && second < end; ++second) {
        *shared = second;
        g_now = m_start.addSecs(second);
        changeDisk(during(Event::Kind::Full, second));
        good = changeLine(second) && send(second);
        m_probe.tick();
        good = good && settle();
        g_now = g_now.addMSecs(kSavePhaseMs);
        report(second);
        m_probe.saveTick();
    }
    *shared = good ? end : *shared;
    return good;
}

QList<Event> readEvents(const QString &path)
{
    const QHash<QByteArray, Event::Kind> kinds{{"unplugged", Event::Kind::Unplugged},
        {"watched", Event::Kind::UnplugWatched}, {"silent", Event::Kind::Silent},
        {"full", Event::Kind::Full}};
    QList<Event> events;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("no events");
    }
    while (!file.atEnd()) {
        const QByteArrayList words = file.readLine().trimmed().split(' ');
        events << Event{
            kinds.value(words.value(0)), words.value(1).toLongLong(), words.value(2).toLongLong()};
    }
    return events;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Folder of the run."));
    parser.addPositionalArgument(QStringLiteral("start"), QStringLiteral("Local time, ISO 8601."));
    parser.addPositionalArgument(QStringLiteral("first"), QStringLiteral("Second to begin with."));
    parser.addPositionalArgument(QStringLiteral("end"), QStringLiteral("Second to end before."));
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() != 4) {
        parser.showHelp(EXIT_FAILURE);
    }
    Days days(arguments.at(0), QDateTime::fromString(arguments.at(1), Qt::ISODate),
        readEvents(arguments.at(0) + QStringLiteral("/events")));
    const bool good = days.run(arguments.at(2).toLongLong(), arguments.at(3).toLongLong());
    if (!good) {
        std::fprintf(stderr, "The station did not answer\n");
    }
    return good ? EXIT_SUCCESS : EXIT_FAILURE;
}
