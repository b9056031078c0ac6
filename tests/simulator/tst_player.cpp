// SPDX-License-Identifier: GPL-3.0-or-later
#include "player.h"

#include "linereader.h"
#include "readingframe.h"
#include "scriptscenario.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ork2;
using namespace std::chrono_literals;

namespace {

constexpr qsizetype kFrameSize = 11;

// Endless; the first height of each frame is its number, starting with 0.
class NumberedScenario : public Scenario
{
public:
    explicit NumberedScenario(int *played)
        : m_played(played)
    { }

    [[nodiscard]] std::optional<Step> next() override
    {
        return Transmission{readingFrame({Channel::Main, (*m_played)++ % (kMaxHeight + 1), 0})};
    }

private:
    int *m_played;
};

// Returns the numbers of complete frames; -1 for other data.
QList<int> frameNumbers(const QByteArray &bytes)
{
    QList<int> numbers;
    for (qsizetype at = 0; at < bytes.size(); at += kFrameSize) {
        const QByteArray frame = bytes.mid(at, kFrameSize);
        const int number = frame.mid(2, 4).toInt();
        numbers.append(frame == readingFrame({Channel::Main, number, 0}) ? number : -1);
    }
    return numbers;
}

std::unique_ptr<Scenario> script(std::vector<ScriptStep> steps, bool repeats = false)
{
    return std::make_unique<ScriptScenario>(Script{std::move(steps), repeats});
}

// Like QTRY_VERIFY, but without its sleeps of 10 ms, which would slow down the player.
template <typename Condition> bool waitUntil(Condition condition)
{
    QEventLoop loop;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&loop, &condition] {
        if (condition()) {
            loop.quit();
        }
    });
    timer.start(1ms);
    QTimer::singleShot(10s, &loop, &QEventLoop::quit);
    loop.exec();
    return condition();
}

Options withPeriod(std::chrono::milliseconds period)
{
    Options options;
    options.period = period;
    return options;
}

} // namespace

class tst_player : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void period_betweenReadings_isKept();
    void period_afterSilence_restarts();
    void delivery_whole_isOneWritePerReading();
    void delivery_bytes_hasLineSpeed();
    void count_reached_finishes();
    void script_over_finishes();
    void end_readerReadsNothing_finishes();
    void end_periodZero_waitsForReader();
    void reader_absent_readingsAreLost();
    void reader_closed_leavesNoData();
    void reader_reopenedWithinAPeriod_findsNoData();
    void line_full_dropsWholeReadings();
    void line_periodZero_losesNothing();
    void requests_fromReader_areReadAndIgnored();
    void unplugging_hangsUpAndReturns();
    void unplugging_periodZero_waitsForReader();
    void unplugging_linked_removesAndRestoresLink();
    void link_impossible_fails();

private:
    void create(std::unique_ptr<Scenario> scenario, const Options &options);
    void openOnReady();

    std::unique_ptr<Player> m_player;
    std::unique_ptr<LineReader> m_reader;
    std::unique_ptr<QSignalSpy> m_ready;
    std::unique_ptr<QSignalSpy> m_finished;
    std::unique_ptr<QSignalSpy> m_failed;
    int m_played = 0;
};

void tst_player::init()
{
    m_reader = std::make_unique<LineReader>();
    m_played = 0;
}

void tst_player::cleanup()
{
    m_player.reset();
    m_reader.reset();
}

void tst_player::create(std::unique_ptr<Scenario> scenario, const Options &options)
{
    m_player = std::make_unique<Player>(std::move(scenario), options);
    m_ready = std::make_unique<QSignalSpy>(m_player.get(), &Player::ready);
    m_finished = std::make_unique<QSignalSpy>(m_player.get(), &Player::finished);
    m_failed = std::make_unique<QSignalSpy>(m_player.get(), &Player::failed);
}

void tst_player::openOnReady()
{
    connect(m_player.get(), &Player::ready, m_reader.get(),
        [this](const QString &path) { QVERIFY(m_reader->open(path)); });
}

void tst_player::period_betweenReadings_isKept()
{
    Options options = withPeriod(30ms);
    options.count = 11;
    create(std::make_unique<NumberedScenario>(&m_played), options);
    openOnReady();
    QElapsedTimer timer;
    timer.start();
    m_player->start();
    QTRY_COMPARE(m_reader->received.size(), 11 * kFrameSize);
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed >= 299 && elapsed < 2000, qPrintable(QString::number(elapsed)));
}

void tst_player::period_afterSilence_restarts()
{
    create(script({{Transmission{"a"}}, {Silence{300ms}}, {Transmission{"b"}}}), withPeriod(50ms));
    openOnReady();
    QElapsedTimer timer;
    timer.start();
    m_player->start();
    QTRY_COMPARE(m_reader->received, QByteArray("a"));
    QTRY_COMPARE(m_reader->received, QByteArray("ab"));
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(elapsed >= 349 && elapsed < 2000, qPrintable(QString::number(elapsed)));
}

void tst_player::delivery_whole_isOneWritePerReading()
{
    Options options = withPeriod(20ms);
    options.count = 10;
    create(std::make_unique<NumberedScenario>(&m_played), options);
    openOnReady();
    m_player->start();
    QTRY_COMPARE(m_reader->received.size(), 10 * kFrameSize);
    QVERIFY2(m_reader->pieces <= 12, qPrintable(QString::number(m_reader->pieces)));
}

void tst_player::delivery_bytes_hasLineSpeed()
{
    constexpr int kFrames = 20;
    constexpr qint64 kLineTimeMs = 1000LL * kFrames * kFrameSize / 960;
    Options options = withPeriod(0ms);
    options.delivery = Delivery::Bytes;
    options.count = kFrames;
    create(std::make_unique<NumberedScenario>(&m_played), options);
    openOnReady();
    QElapsedTimer timer;
    timer.start();
    m_player->start();
    QTRY_COMPARE(m_reader->received.size(), kFrames * kFrameSize);
    const qint64 elapsed = timer.elapsed();
    QVERIFY2(
        elapsed >= kLineTimeMs && elapsed < 8 * kLineTimeMs, qPrintable(QString::number(elapsed)));
    QVERIFY2(m_reader->pieces > 2 * kFrames, qPrintable(QString::number(m_reader->pieces)));
    QVERIFY(!frameNumbers(m_reader->received).contains(-1));
}

void tst_player::count_reached_finishes()
{
    Options options = withPeriod(1ms);
    options.count = 5;
    create(script({{Transmission{"ab"}, 2}, {Silence{1ms}}}, true), options);
    openOnReady();
    m_player->start();
    QVERIFY(m_finished->wait());
    QCOMPARE(m_reader->received, QByteArray("ababababab"));
    QCOMPARE(m_failed->count(), 0);
}

void tst_player::script_over_finishes()
{
    create(script({{Transmission{"a"}, 3}, {Transmission{"b"}}}), withPeriod(1ms));
    openOnReady();
    m_player->start();
    QVERIFY(m_finished->wait());
    QCOMPARE(m_reader->received, QByteArray("aaab"));
}

void tst_player::end_readerReadsNothing_finishes()
{
    create(script({{Transmission{"a"}}}), withPeriod(1ms));
    openOnReady();
    connect(
        m_player.get(), &Player::ready, m_reader.get(), [this] { m_reader->setReading(false); });
    m_player->start();
    QVERIFY(m_finished->wait());
    QCOMPARE(m_reader->received, QByteArray());
}

void tst_player::end_periodZero_waitsForReader()
{
    create(script({{Transmission{"a"}, 3}}), withPeriod(0ms));
    m_player->start();
    QVERIFY(!m_finished->wait(1500));
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    QVERIFY(m_finished->wait());
    QCOMPARE(m_reader->received, QByteArray("aaa"));
}

void tst_player::reader_absent_readingsAreLost()
{
    create(std::make_unique<NumberedScenario>(&m_played), withPeriod(2ms));
    m_player->start();
    QTRY_VERIFY(m_played >= 20);
    const int playedBefore = m_played;
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    QTRY_VERIFY(m_reader->received.size() >= 5 * kFrameSize);
    const QList<int> numbers = frameNumbers(m_reader->received);
    QCOMPARE(numbers.first(), playedBefore);
    QVERIFY(!numbers.contains(-1));
}

void tst_player::reader_closed_leavesNoData()
{
    create(std::make_unique<NumberedScenario>(&m_played), withPeriod(2ms));
    openOnReady();
    m_player->start();
    QTRY_VERIFY(m_reader->received.size() >= 5 * kFrameSize);
    m_reader->setReading(false);
    const int playedBeforePause = m_played;
    QTRY_VERIFY(m_played >= playedBeforePause + 20);
    m_reader->close();
    const int playedBeforeClose = m_played;
    QTRY_VERIFY(m_played >= playedBeforeClose + 5);
    m_reader->received.clear();
    const int playedBeforeOpen = m_played;
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    QTRY_VERIFY(m_reader->received.size() >= 5 * kFrameSize);
    QCOMPARE(frameNumbers(m_reader->received).first(), playedBeforeOpen);
}

void tst_player::reader_reopenedWithinAPeriod_findsNoData()
{
    create(std::make_unique<NumberedScenario>(&m_played), withPeriod(60s));
    openOnReady();
    connect(
        m_player.get(), &Player::ready, m_reader.get(), [this] { m_reader->setReading(false); });
    m_player->start();
    QTRY_COMPARE(m_reader->waiting(), static_cast<int>(kFrameSize));
    m_reader->close();
    QCoreApplication::processEvents();
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    QCOMPARE(m_reader->waiting(), 0);
}

void tst_player::line_full_dropsWholeReadings()
{
    constexpr qsizetype kFramesThatFit = 4095 / kFrameSize;
    create(std::make_unique<NumberedScenario>(&m_played), withPeriod(1ms));
    openOnReady();
    connect(
        m_player.get(), &Player::ready, m_reader.get(), [this] { m_reader->setReading(false); });
    m_player->start();
    QVERIFY(waitUntil([this] { return m_played >= 2 * kFramesThatFit; }));
    m_reader->setReading(true);
    const auto numbers = [this] { return frameNumbers(m_reader->received); };
    QTRY_VERIFY(!numbers().isEmpty() && numbers().constLast() >= 2 * kFramesThatFit);
    QVERIFY(!numbers().contains(-1));
    // Nothing was lost before the line was full, and much after.
    QCOMPARE(numbers().at(kFramesThatFit - 1), kFramesThatFit - 1);
    QVERIFY2(numbers().size() < 2 * kFramesThatFit, qPrintable(QString::number(numbers().size())));
}

void tst_player::line_periodZero_losesNothing()
{
    constexpr int kFrames = 9999;
    Options options = withPeriod(0ms);
    options.count = kFrames;
    create(std::make_unique<NumberedScenario>(&m_played), options);
    m_player->start();
    QTRY_VERIFY(m_played > 4095 / kFrameSize);
    QVERIFY(m_played < kFrames);
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    QVERIFY(m_finished->wait());
    const QList<int> numbers = frameNumbers(m_reader->received);
    QCOMPARE(numbers.size(), kFrames);
    for (int i = 0; i < kFrames; ++i) {
        QCOMPARE(numbers[i], i);
    }
}

void tst_player::requests_fromReader_areReadAndIgnored()
{
    constexpr int kRequests = 10000; // far more than a line can buffer
    const QByteArray request = QByteArray::fromHex("3a00410000ac110d");
    create(std::make_unique<NumberedScenario>(&m_played), withPeriod(5ms));
    openOnReady();
    m_player->start();
    for (int i = 0; i < kRequests; ++i) {
        QVERIFY(m_reader->send(request) || waitUntil([&] { return m_reader->send(request); }));
    }
    const qsizetype before = m_reader->received.size();
    QTRY_VERIFY(m_reader->received.size() >= before + 5 * kFrameSize);
    QVERIFY(!frameNumbers(m_reader->received).contains(-1));
}

void tst_player::unplugging_hangsUpAndReturns()
{
    create(
        script({{Transmission{"a"}}, {Unplugging{200ms}}, {Transmission{"b"}}}), withPeriod(100ms));
    openOnReady();
    QElapsedTimer timer;
    timer.start();
    m_player->start();
    QTRY_COMPARE(m_reader->hangUps, 1);
    QTRY_COMPARE(m_ready->count(), 2);
    QVERIFY2(timer.elapsed() >= 299, qPrintable(QString::number(timer.elapsed())));
    QTRY_COMPARE(m_finished->count(), 1);
    QCOMPARE(m_reader->received, QByteArray("ab"));
}

void tst_player::unplugging_periodZero_waitsForReader()
{
    create(
        script({{Transmission{"a"}, 2}, {Unplugging{1ms}}, {Transmission{"b"}}}), withPeriod(0ms));
    m_player->start();
    QVERIFY(!m_ready->isEmpty());
    QVERIFY(!m_ready->wait(300));
    QVERIFY(m_reader->open(m_ready->at(0).at(0).toString()));
    openOnReady();
    QVERIFY(m_finished->wait());
    QCOMPARE(m_reader->received, QByteArray("aab"));
}

void tst_player::unplugging_linked_removesAndRestoresLink()
{
    const QTemporaryDir folder;
    Options options = withPeriod(5ms);
    options.linkPath = folder.filePath(QStringLiteral("port"));
    const auto target = [&options] { return QFile::symLinkTarget(options.linkPath); };
    create(script({{Transmission{"a"}}, {Unplugging{600ms}}, {Transmission{"b"}}}), options);
    openOnReady();
    m_player->start();
    QCOMPARE(target(), m_ready->at(0).at(0).toString());
    QTRY_COMPARE(m_reader->hangUps, 1);
    QVERIFY(!QFileInfo(options.linkPath).isSymLink());
    QVERIFY(m_ready->wait());
    QCOMPARE(target(), m_ready->at(1).at(0).toString());
    QVERIFY(m_finished->wait());
    m_player.reset();
    QVERIFY(!QFileInfo(options.linkPath).isSymLink());
}

void tst_player::link_impossible_fails()
{
    Options options = withPeriod(1ms);
    options.linkPath = QStringLiteral("/nowhere/at/all");
    create(script({{Transmission{"a"}}}), options);
    m_player->start();
    QCOMPARE(m_failed->count(), 1);
    QCOMPARE(m_failed->at(0).at(0).toString(),
        QStringLiteral("cannot link /nowhere/at/all: No such file or directory"));
    QCOMPARE(m_ready->count(), 0);
    QVERIFY(!m_finished->wait(50));
}

QTEST_GUILESS_MAIN(tst_player)
#include "tst_player.moc"
