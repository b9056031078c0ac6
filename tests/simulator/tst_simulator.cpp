// SPDX-License-Identifier: GPL-3.0-or-later
#include "linereader.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace {

constexpr qsizetype kFrameSize = 11;
constexpr int kLongRunMs = 30000;

// Runs the program with a reader that opens each pseudo-terminal when it is ready.
class Simulator : public QObject
{
public:
    explicit Simulator(const QStringList &arguments, bool reading = true)
    {
        connect(&process, &QProcess::readyReadStandardOutput, this, [this, reading] {
            while (process.canReadLine()) {
                const QString line = QString::fromLocal8Bit(process.readLine());
                output += line;
                static const QRegularExpression announcement(
                    QRegularExpression::anchoredPattern(QStringLiteral("ready (/\\S+)\\n")));
                const auto match = announcement.match(line);
                if (!match.hasMatch()) {
                    continue;
                }
                paths.append(match.captured(1));
                if (reading && !reader.open(paths.last())) {
                    qWarning("cannot open %s", qPrintable(paths.last()));
                }
            }
        });
        process.start(QStringLiteral(ORK2_SIMULATOR), arguments);
    }

    ~Simulator() override
    {
        process.disconnect(this);
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Simulator)

    [[nodiscard]] bool hasExited() const { return process.state() == QProcess::NotRunning; }
    [[nodiscard]] bool exitedWith(int exitCode) const
    {
        return hasExited() && process.exitStatus() == QProcess::NormalExit
            && process.exitCode() == exitCode;
    }
    [[nodiscard]] QString errorOutput()
    {
        return QString::fromLocal8Bit(process.readAllStandardError());
    }
    void signal(int number) const { ::kill(static_cast<pid_t>(process.processId()), number); }

    QProcess process;
    LineReader reader;
    QString output;
    QStringList paths;
};

QStringList words(const QString &text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

} // namespace

class tst_simulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void help_requested_isPrinted();
    void options_bad_exitWithTwo_data();
    void options_bad_exitWithTwo();
    void scenarioFile_bad_exitsWithTwo();
    void link_impossible_exitsWithOne();
    void bytes_sameSeed_areTheSame_data();
    void bytes_sameSeed_areTheSame();
    void scenario_default_isWeather();
    void count_reached_exitsWithZero();
    void count_noReader_exitsWithZero();
    void scenarioFile_good_isPlayed();
    void replay_dayFile_sendsItsReadings();
    void delivery_bytes_hasLineSpeed();
    void link_whileRunning_pointsToTerminal();
    void unplugging_linked_restoresLinkAndReportsReady();
    void signal_whileRunning_exitsWithZeroAndRemovesLink_data();
    void signal_whileRunning_exitsWithZeroAndRemovesLink();

private:
    [[nodiscard]] QString written(const QByteArray &text);

    QTemporaryDir m_folder;
    QString m_link;
};

void tst_simulator::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_link = m_folder.filePath(QStringLiteral("port"));
}

QString tst_simulator::written(const QByteArray &text)
{
    const QString path = m_folder.filePath(QStringLiteral("played.txt"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? path : QString();
}

void tst_simulator::help_requested_isPrinted()
{
    Simulator simulator({QStringLiteral("--help")});
    QTRY_VERIFY(simulator.exitedWith(0));
    QVERIFY(simulator.output.contains(QStringLiteral("--scenario <NAME|FILE>")));
    QVERIFY(simulator.output.contains(QStringLiteral("reading CHANNEL FIRST SECOND [xN]")));
    QVERIFY(simulator.paths.isEmpty());
}

void tst_simulator::options_bad_exitWithTwo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("errorOutput");

    QTest::newRow("unknown option")
        << QStringLiteral("--fast") << QStringLiteral("ork2-simulator: Unknown option 'fast'.\n");
    QTest::newRow("no number")
        << QStringLiteral("--count many")
        << QStringLiteral("ork2-simulator: --count takes a whole number from 1 to 2147483647, "
                          "not \"many\"\n");
    QTest::newRow("no such scenario")
        << QStringLiteral("--scenario /no/such")
        << QStringLiteral("ork2-simulator: cannot read the scenario file \"/no/such\": "
                          "No such file or directory\n");
}

void tst_simulator::options_bad_exitWithTwo()
{
    QFETCH(QString, arguments);
    Simulator simulator(words(arguments));
    QTRY_VERIFY(simulator.exitedWith(2));
    QTEST(simulator.errorOutput(), "errorOutput");
    QCOMPARE(simulator.output, QString());
}

void tst_simulator::scenarioFile_bad_exitsWithTwo()
{
    const QString path = written("reading 0 1 2\nreading 0 1\n");
    Simulator simulator({QStringLiteral("--scenario"), path});
    QTRY_VERIFY(simulator.exitedWith(2));
    QVERIFY(simulator.errorOutput().startsWith(QStringLiteral("ork2-simulator: %1:2: ").arg(path)));
}

void tst_simulator::link_impossible_exitsWithOne()
{
    Simulator simulator(words(QStringLiteral("--link /nowhere/port")));
    QTRY_VERIFY(simulator.exitedWith(1));
    QCOMPARE(simulator.errorOutput(),
        QStringLiteral("ork2-simulator: cannot link /nowhere/port: No such file or directory\n"));
}

void tst_simulator::bytes_sameSeed_areTheSame_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<int>("count");
    QTest::newRow("weather") << QStringLiteral("weather") << 600;
    QTest::newRow("errors") << QStringLiteral("errors") << 600;
    // Ends before the first unplugging, which discards unread bytes.
    QTest::newRow("faults") << QStringLiteral("faults") << 50;
}

void tst_simulator::bytes_sameSeed_areTheSame()
{
    QFETCH(QString, scenario);
    QFETCH(int, count);
    const auto play = [&](int seed) {
        Simulator simulator(words(QStringLiteral("--scenario %1 --period 0 --count %2 --seed %3")
                                      .arg(scenario)
                                      .arg(count)
                                      .arg(seed)));
        [&simulator] { QTRY_VERIFY_WITH_TIMEOUT(simulator.exitedWith(0), kLongRunMs); }();
        return simulator.reader.received;
    };
    const QByteArray first = play(4);
    QVERIFY(first.size() > count / 2 * kFrameSize);
    QCOMPARE(play(4), first);
    QVERIFY(play(5) != first);
}

void tst_simulator::scenario_default_isWeather()
{
    Simulator implied(words(QStringLiteral("--period 0 --count 100")));
    QTRY_VERIFY(implied.exitedWith(0));
    Simulator named(words(QStringLiteral("--scenario weather --seed 1 --period 0 --count 100")));
    QTRY_VERIFY(named.exitedWith(0));
    QCOMPARE(implied.reader.received, named.reader.received);
}

void tst_simulator::count_reached_exitsWithZero()
{
    Simulator simulator(words(QStringLiteral("--period 0 --count 7")));
    QTRY_VERIFY(simulator.exitedWith(0));
    QCOMPARE(simulator.reader.received.size(), 7 * kFrameSize);
    QCOMPARE(simulator.output, QStringLiteral("ready %1\n").arg(simulator.paths.value(0)));
    QCOMPARE(simulator.errorOutput(), QString());
}

void tst_simulator::count_noReader_exitsWithZero()
{
    Simulator simulator(words(QStringLiteral("--period 1 --count 700")), false);
    QTRY_VERIFY(simulator.exitedWith(0));
}

void tst_simulator::scenarioFile_good_isPlayed()
{
    const QString path = written("reading 0 850 1500 x2\nbytes 48 0D\nsilence 20\nrepeat\n");
    Simulator simulator({QStringLiteral("--scenario"), path, QStringLiteral("--period"),
        QStringLiteral("0"), QStringLiteral("--count"), QStringLiteral("4")});
    QTRY_VERIFY(simulator.exitedWith(0));
    QCOMPARE(simulator.reader.received, QByteArray("H008501500\rH008501500\rH\rH008501500\r"));
}

void tst_simulator::replay_dayFile_sendsItsReadings()
{
    const QString path = written("Номер прибора: 17\r\n"
                                 "Время:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\t\r\n"
                                 "\r\n12:00:00\t0850\t----\tОсновной"
                                 "\r\n12:01:00\t8888\t8888\tРезерв");
    Simulator simulator(
        {QStringLiteral("--replay"), path, QStringLiteral("--period"), QStringLiteral("0")});
    QTRY_VERIFY(simulator.exitedWith(0));
    QCOMPARE(simulator.reader.received, QByteArray("H008505000\rH188888888\r"));
}

void tst_simulator::delivery_bytes_hasLineSpeed()
{
    constexpr int kFrames = 40;
    constexpr qint64 kLineTimeMs = 1000LL * kFrames * kFrameSize / 960;
    QElapsedTimer timer;
    timer.start();
    Simulator simulator(
        words(QStringLiteral("--period 0 --delivery bytes --count %1").arg(kFrames)));
    QTRY_COMPARE(simulator.reader.received.size(), kFrames * kFrameSize);
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(
        elapsed >= kLineTimeMs && elapsed < 8 * kLineTimeMs, qPrintable(QString::number(elapsed)));
    QTRY_VERIFY(simulator.exitedWith(0));
}

void tst_simulator::link_whileRunning_pointsToTerminal()
{
    Simulator simulator({QStringLiteral("--link"), m_link});
    QTRY_COMPARE(simulator.paths.size(), 1);
    QCOMPARE(QFile::symLinkTarget(m_link), simulator.paths.first());
    LineReader byLink;
    QVERIFY(byLink.open(m_link));
}

void tst_simulator::unplugging_linked_restoresLinkAndReportsReady()
{
    const QString path = written("reading 0 1 2\nunplug 100\nreading 0 3 4\n");
    Simulator simulator({QStringLiteral("--scenario"), path, QStringLiteral("--period"),
        QStringLiteral("300"), QStringLiteral("--link"), m_link});
    QTRY_COMPARE(simulator.paths.size(), 1);
    QTRY_COMPARE(simulator.paths.size(), 2);
    QCOMPARE(QFile::symLinkTarget(m_link), simulator.paths.last());
    QTRY_VERIFY(simulator.exitedWith(0));
    QVERIFY(!QFileInfo(m_link).isSymLink());
}

void tst_simulator::signal_whileRunning_exitsWithZeroAndRemovesLink_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("arguments");

    QTest::newRow("interrupt") << SIGINT << QStringLiteral("--period 1000");
    QTest::newRow("terminate") << SIGTERM << QStringLiteral("--period 1000");
    QTest::newRow("terminate, period 0") << SIGTERM << QStringLiteral("--period 0");
    QTest::newRow("interrupt, byte by byte")
        << SIGINT << QStringLiteral("--period 0 --delivery bytes");
}

void tst_simulator::signal_whileRunning_exitsWithZeroAndRemovesLink()
{
    QFETCH(int, number);
    QFETCH(QString, arguments);
    Simulator simulator(words(arguments) + QStringList{QStringLiteral("--link"), m_link}, false);
    QTRY_COMPARE(simulator.paths.size(), 1);
    QVERIFY(QFileInfo(m_link).isSymLink());
    simulator.signal(number);
    QTRY_VERIFY(simulator.hasExited());
    QVERIFY(simulator.exitedWith(0));
    QVERIFY(!QFileInfo(m_link).isSymLink());
    QCOMPARE(simulator.errorOutput(), QString());
}

QTEST_GUILESS_MAIN(tst_simulator)
#include "tst_simulator.moc"
