// SPDX-License-Identifier: GPL-3.0-or-later
// The measurement without a person, on a pseudo-terminal, with a simulated clock: the test calls
// the ticks, so no test waits for seconds.
#include "station.h"

#include "comport.h"
#include "pseudoterminal.h"
#include "sharedvalues.h"
#include "stationprobe.h"
#include "timeout.h"
#include "watchtiming.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <unistd.h>

namespace {

const QByteArray kFrame = QByteArrayLiteral("H004201350\r");

QDateTime g_now;

} // namespace

using ork2::Station;
using ork2::StationProbe;

class tst_station : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void reading_isWrittenAtTheMinute();
    void lineBeforeTheFirstReading_isNotWritten();
    void silence_closesThePort_andIsReportedOnce();
    void missingDevice_isTriedAfter_1_2_5_10_10();
    void unplugged_recoversUnderAnotherDevice();
    void garbage_closesThePort();
    void busyPort_isReported();
    void forbiddenPort_isReported();
    void openNow_opensALostPortAtOnce();
    void lost_noLineIsInvented();
    void lost_overMidnight_createsNoFile();
    void newPort_isOpened();
    void newPlace_receivesTheNextLine();
    void row_isUploadedOnlyWithARecentReading();
    void unwritableFolder_isReportedWithItsCause();
    void stuckWorker_isNotHealthy();
    void end_unlocksThePort();

private:
    void plugIn();
    void makeStation();
    void startWithReading();
    void sendFrame();
    void second();
    void seconds(int count);
    void settle();
    [[nodiscard]] QByteArray dayFile(const QString &day = QStringLiteral("2024.05.01")) const;
    [[nodiscard]] QString link() const { return m_folder->filePath(QStringLiteral("port")); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ork2::PseudoTerminal> m_line;
    std::unique_ptr<Station> m_station;
    std::unique_ptr<StationProbe> m_probe;
    std::unique_ptr<QSignalSpy> m_lost;
    std::unique_ptr<QSignalSpy> m_back;
};

void tst_station::init()
{
    g_now = QDateTime(QDate(2024, 5, 1), QTime(12, 0, 30));
    m_folder = std::make_unique<QTemporaryDir>();
    m_line = std::make_unique<ork2::PseudoTerminal>();
    makeStation();
}

void tst_station::cleanup()
{
    m_lost.reset();
    m_back.reset();
    m_probe.reset();
    m_station.reset();
    m_line.reset();
}

void tst_station::makeStation()
{
    m_station = std::make_unique<Station>(link(), ork2::RecordingPlace{m_folder->path(), 7});
    m_probe = std::make_unique<StationProbe>(*m_station);
    m_probe->setClock([] { return g_now; });
    m_lost = std::make_unique<QSignalSpy>(m_station.get(), &Station::lineLost);
    m_back = std::make_unique<QSignalSpy>(m_station.get(), &Station::lineBack);
    m_station->start();
    m_probe->stopTimers();
    settle();
}

// Opens a new pseudo-terminal, usually under another path, with the same link to it.
void tst_station::plugIn()
{
    QVERIFY(m_line->open());
    QFile::remove(link());
    QVERIFY(QFile::link(m_line->path(), link()));
}

void tst_station::settle()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_probe->isSettled() && m_probe->workerAnswered(), kTimeoutMs);
}

void tst_station::second()
{
    g_now = g_now.addSecs(1);
    m_probe->tick();
    settle();
    m_probe->saveTick();
}

void tst_station::seconds(int count)
{
    for (int i = 0; i < count; ++i) {
        second();
    }
}

void tst_station::sendFrame()
{
    QSignalSpy received(&m_probe->comPort(), &ComPort::readyToShowClouds);
    QCOMPARE(m_line->write(kFrame), kFrame.size());
    QTRY_COMPARE_WITH_TIMEOUT(received.count(), 1, kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        m_station->lastReading() && m_station->lastReading()->at == g_now, kTimeoutMs);
}

void tst_station::startWithReading()
{
    plugIn();
    m_station->openNow();
    settle();
    QVERIFY(m_probe->isOpen());
    second();
    sendFrame();
}

QByteArray tst_station::dayFile(const QString &day) const
{
    QFile file(m_folder->filePath(QStringLiteral("Data/ORK-2 N7/%1.txt").arg(day)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_station::reading_isWrittenAtTheMinute()
{
    startWithReading();
    QSignalSpy written(m_station.get(), &Station::lineWritten);
    while (g_now.time().second() != 59) {
        second();
        sendFrame();
    }
    QCOMPARE(dayFile(), QByteArray());
    second();
    QCOMPARE(written.count(), 1);
    QCOMPARE(QString::fromUtf8(dayFile()),
        QStringLiteral("Номер прибора: 7\r\nВремя:\tПервый слой облаков:\tВторой слой "
                       "облаков:\tКанал:\r\n\r\n12:01:00\t0420\t1350\tОсновной"));
}

void tst_station::lineBeforeTheFirstReading_isNotWritten()
{
    plugIn();
    m_station->openNow();
    settle();
    QSignalSpy written(m_station.get(), &Station::lineWritten);
    noReplyCounter.storeRelaxed(0);
    g_now.setTime({12, 0, 58});
    seconds(2);
    QCOMPARE(written.count(), 0);
    QVERIFY(!dayFile().contains("12:01"));
}

void tst_station::silence_closesThePort_andIsReportedOnce()
{
    startWithReading();
    m_lost->clear();
    QSignalSpy opened(m_station.get(), &Station::portOpened);
    seconds(ork2::kLostAfterSeconds);
    QVERIFY(m_probe->isOpen());
    QCOMPARE(m_lost->count(), 0);
    second();
    QCOMPARE(m_lost->count(), 1);
    QVERIFY(m_lost->first().first().toString().contains(QStringLiteral("молчит")));
    QVERIFY(m_probe->isWaiting());
    QCOMPARE(m_probe->retrySeconds(), 1);
    // The port is opened again and closed again; the loss is not reported again, and the pauses
    // grow because no reading was received.
    second();
    QVERIFY(m_probe->isOpen());
    seconds(ork2::kLostAfterSeconds + 1);
    QVERIFY(m_probe->isWaiting());
    QCOMPARE(m_probe->retrySeconds(), 2);
    seconds(2);
    QVERIFY(m_probe->isOpen());
    QCOMPARE(opened.count(), 2);
    QCOMPARE(m_lost->count(), 1);
    m_back->clear();
    sendFrame();
    QCOMPARE(m_back->count(), 1);
    const QDateTime lastReading(QDate(2024, 5, 1), QTime(12, 0, 31));
    QCOMPARE(m_back->first().first().toDateTime(), lastReading);
    QCOMPARE(m_station->trouble(), QString());
}

void tst_station::missingDevice_isTriedAfter_1_2_5_10_10()
{
    QCOMPARE(m_lost->count(), 1); // reported at the start
    QVERIFY(m_station->trouble().contains(link()));
    QSignalSpy attempts(&m_probe->comPort(), &ComPort::error_);
    QList<int> pauses;
    int pause = 0;
    while (pauses.size() < 6) {
        ++pause;
        second();
        if (attempts.count() > 0) {
            attempts.clear();
            pauses << pause;
            pause = 0;
        }
    }
    QCOMPARE(pauses, (QList<int>{1, 2, 5, 10, 10, 10}));
    QCOMPARE(m_lost->count(), 1);
}

void tst_station::unplugged_recoversUnderAnotherDevice()
{
    startWithReading();
    m_lost->clear();
    m_back->clear();
    const QString before = m_line->path();
    ork2::PseudoTerminal neighbour;
    m_line->close();
    QTRY_VERIFY_WITH_TIMEOUT((second(), m_probe->isWaiting()), kTimeoutMs);
    QCOMPARE(m_lost->count(), 1);
    QVERIFY(neighbour.open()); // takes the old number
    plugIn();
    QVERIFY(m_line->path() != before);
    seconds(12);
    QVERIFY(m_probe->isOpen());
    sendFrame();
    QCOMPARE(m_back->count(), 1);
}

void tst_station::garbage_closesThePort()
{
    startWithReading();
    m_lost->clear();
    const auto lostByGarbage = [this] {
        return m_lost->count() > 0 || m_line->write("xxxxxxxxxxx") < 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(lostByGarbage(), kTimeoutMs);
    QCOMPARE(m_lost->count(), 1);
    QVERIFY(m_lost->first().first().toString().contains(QStringLiteral("другие байты")));
    settle();
    QVERIFY(m_probe->isWaiting());
    seconds(1);
    QVERIFY(m_probe->isOpen());
    sendFrame();
    QCOMPARE(m_station->trouble(), QString());
}

void tst_station::busyPort_isReported()
{
    plugIn();
    QSerialPort other(m_line->path());
    QVERIFY(other.open(QIODevice::ReadWrite));
    m_station->openNow();
    settle();
    QVERIFY(m_probe->isWaiting());
    QVERIFY2(
        m_station->trouble().contains(QStringLiteral("занято")), qPrintable(m_station->trouble()));
    other.close();
    seconds(2);
    QVERIFY(m_probe->isOpen());
}

void tst_station::forbiddenPort_isReported()
{
    if (::geteuid() == 0) {
        QSKIP("The administrator may open every port");
    }
    plugIn();
    QVERIFY(QFile::setPermissions(m_line->path(), {}));
    m_station->openNow();
    settle();
    QVERIFY2(m_station->trouble().contains(QStringLiteral("нет права")),
        qPrintable(m_station->trouble()));
}

void tst_station::openNow_opensALostPortAtOnce()
{
    seconds(20); // the pauses have grown to 10 s
    plugIn();
    m_station->openNow();
    settle();
    QVERIFY(m_probe->isOpen());
    m_station->openNow(); // nothing to do
    QVERIFY(m_probe->isOpen());
}

void tst_station::lost_noLineIsInvented()
{
    startWithReading();
    g_now.setTime({12, 0, 54});
    sendFrame();
    m_line->close();
    QTRY_VERIFY_WITH_TIMEOUT((m_probe->tick(), settle(), m_probe->isWaiting()), kTimeoutMs);
    noReplyCounter.storeRelaxed(0);
    seconds(6);
    QCOMPARE(g_now.time(), QTime(12, 1));
    seconds(180);
    // The reading was 6 s old at 12:01.
    QVERIFY2(!dayFile().contains("12:0"), dayFile().constData());
}

void tst_station::lost_overMidnight_createsNoFile()
{
    startWithReading();
    g_now.setTime({23, 59, 0});
    sendFrame();
    seconds(ork2::kLostAfterSeconds + 1);
    QVERIFY(m_lost->count() > 0);
    seconds(60);
    QCOMPARE(g_now.date(), QDate(2024, 5, 2));
    QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("Data/ORK-2 N7/2024.05.02.txt"))));
}

void tst_station::newPort_isOpened()
{
    startWithReading();
    ork2::PseudoTerminal other;
    QVERIFY(other.open());
    m_station->setPort(other.path());
    settle();
    seconds(1);
    QVERIFY(m_probe->isOpen());
    QCOMPARE(other.write(kFrame), kFrame.size());
    QTRY_COMPARE_WITH_TIMEOUT(m_station->lastReading()->at, g_now, kTimeoutMs);
}

void tst_station::newPlace_receivesTheNextLine()
{
    startWithReading();
    m_station->setPlace({m_folder->filePath(QStringLiteral("other")), 8});
    g_now.setTime({12, 0, 59});
    sendFrame();
    second();
    QFile file(m_folder->filePath(QStringLiteral("other/Data/ORK-2 N8/2024.05.01.txt")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("12:01:00\t0420\t1350"));
    QCOMPARE(dayFile(), QByteArray());
}

void tst_station::row_isUploadedOnlyWithARecentReading()
{
    QVariantList row;
    int rows = 0;
    m_station->setUploadTarget([&](const QVariantList &values) {
        row = values;
        ++rows;
    });
    startWithReading();
    g_now.setTime({12, 0, 59});
    sendFrame();
    second();
    QCOMPARE(rows, 1);
    QCOMPARE(row,
        (QVariantList{QStringLiteral("2024-05-01"), QByteArray("12:01:00"), 7, QByteArray("0420"),
            QByteArray("1350"), QStringLiteral("Основной").toUtf8()}));
    g_now.setTime({12, 1, 50});
    seconds(10);
    QCOMPARE(rows, 1);
    m_station->setUploadTarget({});
    sendFrame();
    g_now.setTime({12, 2, 59});
    second();
    QCOMPARE(rows, 1);
}

void tst_station::unwritableFolder_isReportedWithItsCause()
{
    startWithReading();
    // A file in place of the folder: not even the administrator can write.
    QFile file(m_folder->filePath(QStringLiteral("Data")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QSignalSpy failed(m_station.get(), &Station::lineNotWritten);
    g_now.setTime({12, 0, 59});
    sendFrame();
    second();
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed.first().first().toDateTime().time(), QTime(12, 1));
    QVERIFY(!failed.first().at(1).toString().isEmpty());
    QVERIFY(file.remove());
    QSignalSpy written(m_station.get(), &Station::lineWritten);
    g_now.setTime({12, 1, 59});
    sendFrame();
    second();
    QCOMPARE(written.count(), 1);
}

void tst_station::stuckWorker_isNotHealthy()
{
    startWithReading();
    QVERIFY(m_station->isHealthy());
    QSemaphore reached;
    QSemaphore release;
    QMetaObject::invokeMethod(&m_probe->comPort(), [&] {
        reached.release();
        release.acquire();
    });
    reached.acquire();
    for (int i = 0; i <= ork2::kWorkerAnswerSeconds; ++i) {
        QVERIFY2(m_station->isHealthy(), qPrintable(QString::number(i)));
        m_probe->tick();
    }
    QVERIFY(!m_station->isHealthy());
    release.release();
    QTRY_VERIFY_WITH_TIMEOUT(m_probe->workerAnswered(), kTimeoutMs);
    m_probe->tick();
    QVERIFY(m_station->isHealthy());
}

void tst_station::end_unlocksThePort()
{
    startWithReading();
    const QString device = m_line->path();
    QVERIFY(m_station->end());
    QSerialPort other(device);
    QVERIFY2(other.open(QIODevice::ReadWrite), qPrintable(other.errorString()));
}

QTEST_GUILESS_MAIN(tst_station)
#include "tst_station.moc"
