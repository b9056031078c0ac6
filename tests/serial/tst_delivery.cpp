// SPDX-License-Identifier: GPL-3.0-or-later
// Faults of the line with all ways in which adapters split the data. The tests use the controller,
// which closes the port after twelve reads without a frame, so that the user has to start again.
#include "mainbackend.h"

#include "framenumber.h"
#include "frames.h"
#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "sharedvalues.h"
#include "timeout.h"

#include <QDeadlineTimer>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <memory>

namespace {

constexpr qsizetype kFramesAfter = 6;
constexpr qsizetype kRequiredFrames = 3; // of kFramesAfter

// Returns the replacements of a good frame, one for each position in it.
QList<QByteArray> faults(const QByteArray &kind)
{
    const QByteArray good = frameNumber(900);
    QList<QByteArray> faulty;
    for (qsizetype place = 0; place < good.size(); ++place) {
        if (kind == "lost") {
            faulty << QByteArray(good).remove(place, 1);
        } else if (kind == "added") {
            faulty << QByteArray(good).insert(place, '5');
        } else if (place > 0) {
            faulty << good.sliced(place); // the port was opened in the middle of a frame
        }
    }
    return faulty;
}

} // namespace

class tst_delivery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase();

    void fault_anyDelivery_recovers_data();
    void fault_anyDelivery_recovers();
    void garbage_anyDelivery_isReportedAsLost_data();
    void garbage_anyDelivery_isReportedAsLost();

private:
    void start();
    // Sends pieces of the given lengths, repeatedly; each causes one read event of the port.
    void deliver(const QByteArray &bytes, const QList<int> &pieces);
    void deliverPiece(const QByteArray &piece);
    [[nodiscard]] bool portIsOpen();

    ork2::PseudoTerminal m_line;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<mainBackEnd> m_backEnd;
    std::atomic_int m_readEvents = 0;
    std::atomic_bool m_portOpen = false;
    QList<QByteArray> m_frames;
    QStringList m_table;
};

void tst_delivery::init()
{
    profile::clear();
    QVERIFY2(m_line.open(), qPrintable(m_line.errorString()));
    profile::store(ork2::kPortToShow, m_line.path());
    m_log = std::make_unique<LogCapture>();
    m_backEnd = std::make_unique<mainBackEnd>();
    ComPort *worker = MainBackEndProbe(*m_backEnd).comPort();
    connect(&worker->port(), &QIODevice::readyRead,
        [this] { ++m_readEvents; }); // in the worker thread, after the slot of the worker
    connect(worker, &ComPort::readyToShowClouds, this,
        [this](const QByteArray &frame) { m_frames << frame; }); // queued into this thread
}

void tst_delivery::cleanup()
{
    MainBackEndProbe(*m_backEnd).endWorker();
    m_backEnd.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

void tst_delivery::cleanupTestCase()
{
    for (const QString &row : std::as_const(m_table)) {
        qInfo().noquote() << row;
    }
}

void tst_delivery::start()
{
    m_backEnd->disableButton();
    QSignalSpy texts(m_backEnd.get(), &mainBackEnd::sendCounter);
    m_backEnd->enButton();
    QTRY_VERIFY_WITH_TIMEOUT(std::any_of(texts.cbegin(), texts.cend(),
                                 [](const QVariantList &text) {
                                     return text.first().toString().contains(
                                         QStringLiteral(">> Открыт!"));
                                 }),
        kTimeoutMs);
    MainBackEndProbe(*m_backEnd)
        .requestTimer()
        ->stop(); // prevents a reported loss on a busy machine
}

void tst_delivery::deliver(const QByteArray &bytes, const QList<int> &pieces)
{
    qsizetype index = 0;
    for (qsizetype sent = 0; sent < bytes.size();) {
        const QByteArray piece = bytes.mid(sent, pieces.at(index++ % pieces.size()));
        deliverPiece(piece);
        sent += piece.size();
    }
}

void tst_delivery::deliverPiece(const QByteArray &piece)
{
    const int before = m_readEvents;
    if (!portIsOpen()) {
        return; // the rest would not be read
    }
    QCOMPARE(m_line.write(piece), piece.size());
    const QDeadlineTimer deadline(kTimeoutMs);
    while ((m_readEvents == before || m_line.unread() > 0) && portIsOpen()) {
        QVERIFY2(!deadline.hasExpired(), "the port does not read the data");
    }
}

// Called in the worker thread: events that it posted before are processed here afterwards.
bool tst_delivery::portIsOpen()
{
    ComPort *worker = MainBackEndProbe(*m_backEnd).comPort();
    QMetaObject::invokeMethod(
        worker, [this, worker] { m_portOpen = worker->port().isOpen(); },
        Qt::BlockingQueuedConnection);
    QCoreApplication::processEvents();
    return m_portOpen;
}

void tst_delivery::fault_anyDelivery_recovers_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<QList<int>>("pieces");
    const QList<std::pair<const char *, QList<int>>> deliveries{{"whole frames", {12}},
        {"5 + 6 bytes", {5, 6}}, {"8 + 3", {8, 3}}, {"4 + 4 + 3", {4, 4, 3}},
        {"single bytes", {1}}};
    for (const auto &[delivery, pieces] : deliveries) {
        for (const char *kind : {"lost", "opened in mid-frame", "added"}) {
            QTest::addRow("%s, %s", delivery, kind) << QByteArray(kind) << pieces;
        }
    }
}

void tst_delivery::fault_anyDelivery_recovers()
{
    QFETCH(const QByteArray, kind);
    QFETCH(const QList<int>, pieces);
    const QList<QByteArray> faulty = faults(kind);
    int closed = 0;
    qsizetype fewest = kFramesAfter;
    for (const QByteArray &bytes : faulty) {
        start();
        if (kind != "opened in mid-frame") {
            deliver(frameNumber(1), pieces);
        }
        deliver(bytes, pieces);
        m_frames.clear();
        for (int number = 2; number < 2 + kFramesAfter; ++number) {
            deliver(frameNumber(number), pieces);
        }
        const bool open = portIsOpen();
        qsizetype read = 0;
        for (int number = 2; number < 2 + kFramesAfter; ++number) {
            read += m_frames.contains(frameNumber(number)) ? 1 : 0;
        }
        closed += open ? 0 : 1;
        fewest = std::min(fewest, read);
    }
    m_table << QStringLiteral("%1: port closed in %2 of %3; at least %4 of the next %5 frames read")
                   .arg(QString::fromLatin1(QTest::currentDataTag()))
                   .arg(closed)
                   .arg(faulty.size())
                   .arg(fewest)
                   .arg(kFramesAfter);
    QCOMPARE(closed, 0);
    QVERIFY2(fewest >= kRequiredFrames, qPrintable(m_table.constLast()));
}

void tst_delivery::garbage_anyDelivery_isReportedAsLost_data()
{
    QTest::addColumn<QByteArray>("garbage"); // sent repeatedly
    QTest::addColumn<int>("reads");          // until the line is reported as lost
    QTest::newRow("no frame, whole") << QByteArray("X0123456789") << 12;
    QTest::newRow("no frame, single bytes") << QByteArray("X") << 12;
    // Each buffer ends like a frame, so the worker resynchronizes once.
    QTest::newRow("ends without starts") << QByteArray("X012345678\r") << 13;
}

void tst_delivery::garbage_anyDelivery_isReportedAsLost()
{
    QFETCH(const QByteArray, garbage);
    QFETCH(const int, reads);
    start();
    QSignalSpy lamp(m_backEnd.get(), &mainBackEnd::connectionLED);
    for (int read = 1; read <= reads; ++read) {
        QVERIFY2(portIsOpen(), QByteArray::number(read));
        QCOMPARE(lamp.count(), 0);
        deliverPiece(garbage);
    }
    QTRY_COMPARE_WITH_TIMEOUT(lamp, (QList<QVariantList>{{false}}), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(!portIsOpen(), kTimeoutMs);
}

QTEST_GUILESS_MAIN(tst_delivery)
#include "tst_delivery.moc"
