// SPDX-License-Identifier: GPL-3.0-or-later
// Calls Start and Stop of the controller a thousand times per second while frames arrive, so that
// the two threads access their shared data at any moment of opening, reading and closing.
#include "mainbackend.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "portlock.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "sharedvalues.h"
#include "timeout.h"

#include <QDir>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace {

constexpr int kBursts = 8;
constexpr int kStartsInBurst = 25;
constexpr int kStartsBeforeEnd = 2000;
constexpr auto kWriterPause = std::chrono::microseconds(100);
const QByteArray kFrame = QByteArrayLiteral("H112342345\r");

} // namespace

class tst_hammer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startStop_framesArriving_portStaysUsable_data();
    void startStop_framesArriving_portStaysUsable();
    void destruction_workerHasBacklog_releasesThePort();

private:
    void hammer(const std::function<void(bool)> &press);

    ork2::PseudoTerminal m_line;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<mainBackEnd> m_backEnd;
};

void tst_hammer::init()
{
    profile::clear();
    QVERIFY(m_line.open());
    profile::store(ork2::kPortToShow, m_line.path());
    profile::store(ork2::kPortToOpen, m_line.path());
    noReplyCounter.storeRelaxed(0);
    m_log = std::make_unique<LogCapture>();
    m_backEnd = std::make_unique<mainBackEnd>();
}

void tst_hammer::cleanup()
{
    if (m_backEnd) {
        MainBackEndProbe(*m_backEnd).endWorker();
        m_backEnd.reset();
    }
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

// Presses Start and Stop in bursts that end with Start. A reading must be received after each
// burst.
void tst_hammer::hammer(const std::function<void(bool)> &press)
{
    std::atomic_bool finished = false;
    std::thread instrument([this, &finished] {
        while (!finished) {
            if (m_line.write(kFrame) != kFrame.size()) {
                std::this_thread::sleep_for(kWriterPause);
            }
        }
    });
    const auto end = qScopeGuard([&] {
        finished = true;
        instrument.join();
    });
    QSignalSpy heights(m_backEnd.get(), &mainBackEnd::secondCloudAlt);
    for (int burst = 0; burst < kBursts; ++burst) {
        int left = 2 * kStartsInBurst - 1;
        QTimer timer;
        timer.setTimerType(Qt::PreciseTimer);
        timer.callOnTimeout([&] { press(left-- % 2 != 0); });
        timer.start(1);
        while (left > 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        timer.stop();
        QTRY_VERIFY_WITH_TIMEOUT(
            heights.contains(QVariantList{QStringLiteral("2345")}), kTimeoutMs);
        press(false);
        heights.clear();
    }
}

void tst_hammer::startStop_framesArriving_portStaysUsable_data()
{
    QTest::addColumn<bool>("searching");
    QTest::newRow("start button") << false;
    QTest::newRow("switch with port search") << true;
}

void tst_hammer::startStop_framesArriving_portStaysUsable()
{
    QFETCH(bool, searching);
    const auto press = [this, searching](bool start) {
        if (searching) {
            m_backEnd->startButtonSB(!start);
        } else if (start) {
            m_backEnd->enButton();
        } else {
            m_backEnd->disableButton();
        }
    };
    QSignalSpy texts(m_backEnd.get(), &mainBackEnd::sendCounter);
    QSignalSpy heights(m_backEnd.get(), &mainBackEnd::secondCloudAlt);
    int opened = 0;
    int closed = 0;
    const auto count = [&] {
        for (const QVariantList &text : qAsConst(texts)) {
            opened += text.first().toString().contains(QStringLiteral("Открыт!")) ? 1 : 0;
            closed += text.first().toString().contains(QStringLiteral("Закрыт!")) ? 1 : 0;
        }
        texts.clear();
    };
    const auto allOpened = [&](int times) {
        count();
        return opened == times;
    };
    press(true);
    press(false);
    QTRY_VERIFY(allOpened(1)); // resources that Qt opens once and keeps are open now
    QTRY_VERIFY(!portIsLocked(m_line.path()));
    const qsizetype handles = QDir(QStringLiteral("/proc/self/fd")).entryList().size();

    hammer(press);
    const int times = 1 + kBursts * kStartsInBurst;
    QVERIFY2(QTest::qWaitFor([&] { return allOpened(times); }, kTimeoutMs),
        QByteArray::number(opened) + " opened, " + QByteArray::number(closed) + " closed");
    QTRY_VERIFY(!portIsLocked(m_line.path()));
    QTRY_COMPARE(QDir(QStringLiteral("/proc/self/fd")).entryList().size(), handles);

    press(true);
    QTRY_VERIFY(allOpened(times + 1));
    heights.clear();
    QVERIFY(m_line.write("H003000400\r") > 0);
    QTRY_VERIFY(heights.contains(QVariantList{QStringLiteral("0400")}));
}

void tst_hammer::destruction_workerHasBacklog_releasesThePort()
{
    // Each start waits for the disk, so the worker gets a backlog.
    for (int i = 0; i < kStartsBeforeEnd; ++i) {
        m_backEnd->disableButton();
        m_backEnd->enButton();
    }
    const MainBackEndProbe probe(*m_backEnd);
    ComPort *port = probe.comPort();
    QThread *thread = probe.workerThread();
    std::unique_ptr<convertData> parser(probe.parser());
    std::unique_ptr<datalogger> writer(probe.fileWriter());
    m_backEnd.reset();
    const bool locked = portIsLocked(m_line.path());
    bool isOpen = true;
    QMetaObject::invokeMethod(
        port, [&] { isOpen = port->port().isOpen(); }, Qt::BlockingQueuedConnection);
    thread->quit();
    thread->wait();
    QVERIFY(!locked);
    QVERIFY(!isOpen);
}

QTEST_MAIN(tst_hammer)
#include "tst_hammer.moc"
