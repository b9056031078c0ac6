// SPDX-License-Identifier: GPL-3.0-or-later
// The recorder writes the same day files as the terminal: the object graphs of both programs
// measure the same simulated hours, one after the other, each with a real line and real files.
#include "mainbackend.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "scenariofactory.h"
#include "sharedvalues.h"
#include "stationprobe.h"
#include "timeout.h"

#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

namespace {

constexpr int kSeconds = 3600; // over a midnight before a leap day
constexpr int kSavePhaseMs = 300;
const QDateTime kStart(QDate(2024, 2, 28), QTime(23, 30, 30));

QDateTime g_now;

// A program that measures, driven by the test.
class Program
{
public:
    Program() = default;
    virtual ~Program() = default;
    Q_DISABLE_COPY_MOVE(Program)

    virtual void plugIn(const QString &device) = 0; // afterwards, its port is open
    virtual void unplug() = 0; // the device has been removed; waits until the port is closed
    virtual void tick() = 0;
    virtual void saveTick() = 0;
    [[nodiscard]] virtual ComPort &comPort() = 0;
};

class TerminalProgram : public Program
{
public:
    TerminalProgram()
    {
        m_probe.setClock([] { return g_now; });
    }
    ~TerminalProgram() override { m_probe.endWorker(); }
    Q_DISABLE_COPY_MOVE(TerminalProgram)

    // The person at the terminal presses Stop and Start as soon as the device is back.
    void plugIn(const QString &device) override
    {
        currentPortName = device;
        if (m_backEnd.enabledButton()) {
            m_backEnd.disableButton();
        }
        m_backEnd.enButton();
        for (QTimer *timer : {m_probe.requestTimer(), m_probe.saveTimer(), m_probe.plotTimer()}) {
            timer->blockSignals(true);
        }
        QTRY_VERIFY_WITH_TIMEOUT(isOpen(), kTimeoutMs);
    }
    void unplug() override { QTRY_VERIFY_WITH_TIMEOUT(!isOpen(), kTimeoutMs); }
    void tick() override { m_probe.tickWatchdog(); }
    void saveTick() override
    {
        if (m_probe.saveTimer()->isActive()) {
            m_probe.tickSave();
        }
    }
    [[nodiscard]] ComPort &comPort() override { return *m_probe.comPort(); }

private:
    [[nodiscard]] bool isOpen()
    {
        bool open = false;
        QMetaObject::invokeMethod(
            &comPort(), [&] { open = comPort().port().isOpen(); }, Qt::BlockingQueuedConnection);
        return open;
    }

    mainBackEnd m_backEnd;
    MainBackEndProbe m_probe{m_backEnd};
};

class RecorderProgram : public Program
{
public:
    explicit RecorderProgram(const QString &base)
        : m_link(base + QStringLiteral("/port"))
        , m_station(m_link, {base, 17})
    {
        m_probe.setClock([] { return g_now; });
        m_station.start();
        m_probe.stopTimers();
    }

    void plugIn(const QString &device) override
    {
        QFile::remove(m_link);
        QVERIFY(QFile::link(device, m_link));
        QTRY_VERIFY_WITH_TIMEOUT(m_probe.isSettled(), kTimeoutMs);
        m_station.openNow();
        QTRY_VERIFY_WITH_TIMEOUT(m_probe.isOpen(), kTimeoutMs);
    }
    void unplug() override { QTRY_VERIFY_WITH_TIMEOUT(m_probe.isWaiting(), kTimeoutMs); }
    void tick() override
    {
        m_probe.tick();
        while (!m_probe.isSettled()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    void saveTick() override { m_probe.saveTick(); }
    [[nodiscard]] ComPort &comPort() override { return m_probe.comPort(); }

private:
    QString m_link;
    ork2::Station m_station;
    ork2::StationProbe m_probe{m_station};
};

// Waits until the worker has processed what was written to the line, and the main thread what the
// worker reported.
void drain(const ork2::PseudoTerminal &line, Program &program)
{
    constexpr int kRounds = 3; // the line passes written bytes on with a delay
    for (int round = 0; round < kRounds; ++round) {
        qint64 waiting = 0;
        do {
            QMetaObject::invokeMethod(
                &program.comPort(), [] { QCoreApplication::processEvents(); },
                Qt::BlockingQueuedConnection);
            waiting = line.unread();
        } while (waiting > 0);
        QCoreApplication::processEvents();
    }
}

class Instrument
{
public:
    explicit Instrument(const ork2::Options &options)
        : m_result(ork2::makeScenario(options))
    { }

    // Measures the hours of the test. Returns the number of readings and faults that were played.
    int play(Program &program)
    {
        int steps = 0;
        if (!m_result.scenario || !plugIn(program)) {
            return 0;
        }
        for (int second = 0; second < kSeconds; ++second) {
            g_now = kStart.addSecs(second);
            if (m_pause > 0 && --m_pause == 0 && !m_line.isOpen() && !plugIn(program)) {
                return 0;
            }
            if (m_pause == 0 && playStep(program)) {
                ++steps;
            }
            program.tick();
            g_now = g_now.addMSecs(kSavePhaseMs);
            program.saveTick();
        }
        return steps;
    }

private:
    [[nodiscard]] bool plugIn(Program &program)
    {
        if (!m_line.open()) {
            return false;
        }
        program.plugIn(m_line.path());
        return true;
    }

    bool playStep(Program &program)
    {
        const std::optional<ork2::Step> step = m_result.scenario->next();
        if (!step) {
            return false;
        }
        if (const auto *sent = std::get_if<ork2::Transmission>(&*step)) {
            (void)m_line.write(sent->bytes);
            drain(m_line, program);
        } else if (const auto *silence = std::get_if<ork2::Silence>(&*step)) {
            m_pause = inSeconds(silence->duration);
        } else {
            m_pause = inSeconds(std::get<ork2::Unplugging>(*step).duration);
            m_line.close();
            program.unplug();
        }
        return true;
    }

    [[nodiscard]] static int inSeconds(std::chrono::milliseconds duration)
    {
        return static_cast<int>(std::chrono::duration_cast<std::chrono::seconds>(duration).count());
    }

    ork2::ScenarioResult m_result;
    ork2::PseudoTerminal m_line;
    int m_pause = 0; // seconds until the next step
};

QByteArrayList filesIn(const QString &base)
{
    const QDir folder(base + QStringLiteral("/Data/ORK-2 N17"));
    QByteArrayList contents;
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        (void)file.open(QIODevice::ReadOnly);
        contents << name.toUtf8() << file.readAll();
    }
    return contents;
}

} // namespace

class tst_samefiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void scenario_sameBytes_data();
    void scenario_sameBytes();

private:
    QTemporaryDir m_folder;
};

void tst_samefiles::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QFile pauses(m_folder.filePath(QStringLiteral("pauses")));
    QVERIFY(pauses.open(QIODevice::WriteOnly));
    pauses.write(
        "reading 0 850 1500 x100\nsilence 90000\nreading 1 7777 7777 x40\nsilence 4000\n"
        "reading 1 3000 420 x7\nsilence 7000\nreading 0 8888 0 x50\nunplug 45000\nrepeat\n");
    QFile day(m_folder.filePath(QStringLiteral("day")));
    QVERIFY(day.open(QIODevice::WriteOnly));
    day.write(QStringLiteral("Номер прибора: 3\r\nВремя:\tПервый слой облаков:\tВторой слой "
                             "облаков:\tКанал:\r\n")
                  .toUtf8());
    for (int line = 0; line < kSeconds; ++line) {
        day.write(QStringLiteral("\r\n%1\t%2\t----\t%3")
                      .arg(QTime(0, 0).addSecs(line).toString(u"hh:mm:ss"))
                      .arg(line % 2800, 4, 10, QLatin1Char('0'))
                      .arg(line % 900 < 450 ? QStringLiteral("Основной") : QStringLiteral("Резерв"))
                      .toUtf8());
    }
}

void tst_samefiles::scenario_sameBytes_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("dayFile");
    QTest::newRow("weather") << QStringLiteral("weather") << QString();
    QTest::newRow("errors") << QStringLiteral("errors") << QString();
    QTest::newRow("faults") << QStringLiteral("faults") << QString();
    QTest::newRow("scenario file") << m_folder.filePath(QStringLiteral("pauses")) << QString();
    QTest::newRow("day file") << QString() << m_folder.filePath(QStringLiteral("day"));
}

void tst_samefiles::scenario_sameBytes()
{
    QFETCH(QString, scenario);
    QFETCH(QString, dayFile);
    ork2::Options options;
    options.scenario = scenario;
    options.dayFile = dayFile;
    options.period = std::chrono::seconds(1);

    QTemporaryDir terminalFolder;
    profile::clear();
    profile::store(ork2::kNamePath, terminalFolder.path());
    profile::store(ork2::kUnitNumber, QStringLiteral("17"));
    int steps = 0;
    {
        TerminalProgram terminal;
        steps = Instrument(options).play(terminal);
    }
    QVERIFY(steps > kSeconds / 4);

    profile::clear(); // the recorder does not read it
    QTemporaryDir recorderFolder;
    {
        RecorderProgram recorder(recorderFolder.path());
        QCOMPARE(Instrument(options).play(recorder), steps);
    }
    const QByteArrayList expected = filesIn(terminalFolder.path());
    QCOMPARE(expected.size(), 4); // two days: names and contents
    const QByteArrayList found = filesIn(recorderFolder.path());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        QCOMPARE(found.value(i).split('\n'), expected.at(i).split('\n'));
    }
    QCOMPARE(found, expected);
    qInfo("%lld lines", static_cast<long long>(found.join().count("\r\n") - 4));
}

QTEST_MAIN(tst_samefiles)
#include "tst_samefiles.moc"
