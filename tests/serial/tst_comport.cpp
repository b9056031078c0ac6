// SPDX-License-Identifier: GPL-3.0-or-later
#include "comport.h"

#include "comportprobe.h"
#include "failingsignals.h"
#include "framenumber.h"
#include "frames.h"
#include "logcapture.h"
#include "metamembers.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "sharedvalues.h"
#include "timeout.h"

#include <QDeadlineTimer>
#include <QMetaMethod>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <array>
#include <atomic>
#include <thread>

namespace {

const QByteArray kGood = QByteArrayLiteral("H112342345\r");

} // namespace

class tst_comport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void metaObject_members_areInDeclaredOrder();
    void construction_boundsTheReadBuffer_andResetsCounter();

    void connect_goodPort_configuresAndReports();
    void connect_missingPort_reportsErrorString();
    void connect_noTerminal_reportsErrorString();
    void connect_setterFails_closesAndReports();
    void disconnect_closedPort_isSilent();
    void disconnect_openPort_reports();
    void portSearchSettings_anyParity_configureNoParity();

    void frame_oneWrite_isEmitted();
    void frame_received_emitsInOrderThenResetsCounter();
    void frame_status_showsEachByte();
    void frame_resetsReplyCounter();
    void frame_byteByByte_isEmitted();
    void frame_twoPieces_isReadWhenComplete();
    void frame_wrongStart_isNotEmitted();
    void frame_lastByte_isNotChecked();
    void frame_digitCorruptedToStart_isOneFrame();
    void twoFrames_atFirstReadEvent_doNotStall();
    void burst_of2000Frames_isReceivedCompletely();
    void burst_throughWorkerThread_isReceivedCompletely();

    void misses_everyTwelve_switchLampOff();
    void misses_frameBetween_restartTheCount();
    void misses_beforeStop_doNotCountAfterStart();

    void fault_wholeFrames_recoversWithin15_data();
    void fault_wholeFrames_recoversWithin15();
    void fault_stopAndStart_recovers_data();
    void fault_stopAndStart_recovers();
    void noise_wholeFrames_recoversWithin15_data();
    void noise_wholeFrames_recoversWithin15();
    void misalignedCarriageReturn_isDiscarded();
    void unplugging_reportsErrorAndClosed();
    void adapter_signalsFail_staysOpen();
    void otherErrors_areIgnored();

    void request_isSentByteForByte_data();
    void request_isSentByteForByte();
    void request_withoutPendingReply_isReported();
    void request_heaterSetPoint_isIgnored();
    void sending_closedPort_isHarmless();
    void crc_asText_data();
    void crc_asText();
    void legacyCommand_placeholders_areReplacedByCrc_data();
    void legacyCommand_placeholders_areReplacedByCrc();
    void legacyRead_emitsText();
    void entry_and_destruction_areLogged();

private:
    void connectPort();
    // Sends a good frame. Returns whether it is received.
    [[nodiscard]] bool goodFrameIsReceived();
    // Sends up to 15 good frames one by one. Returns whether one of them is received.
    [[nodiscard]] bool oneOf15FramesIsReceived();
    [[nodiscard]] bool frameIsReceived(int timeoutMs);
    void send(const QByteArray &bytes);

    ork2::PseudoTerminal m_line;
    QScopedPointer<LogCapture> m_log;
    QScopedPointer<ComPort> m_port;
    QScopedPointer<QSignalSpy> m_frames;
    QScopedPointer<QSignalSpy> m_texts;
    QScopedPointer<QSignalSpy> m_lamp;
};

void tst_comport::init()
{
    QVERIFY2(m_line.open(), qPrintable(m_line.errorString()));
    m_log.reset(new LogCapture);
    m_port.reset(new ComPort);
    m_frames.reset(new QSignalSpy(m_port.get(), &ComPort::readyToShowClouds));
    m_texts.reset(new QSignalSpy(m_port.get(), &ComPort::error_));
    m_lamp.reset(new QSignalSpy(m_port.get(), &ComPort::connectLED));
}

void tst_comport::cleanup()
{
    m_port.reset();
    m_log.reset();
}

void tst_comport::connectPort()
{
    m_port->Write_Settings_Port(m_line.path(), 9600, 8, 0, 1, 0);
    m_port->ConnectPort();
    QVERIFY(m_port->port().isOpen());
    m_texts->clear();
}

void tst_comport::send(const QByteArray &bytes)
{
    QCOMPARE(m_line.write(bytes), bytes.size());
}

bool tst_comport::goodFrameIsReceived()
{
    return frameIsReceived(kTimeoutMs);
}

bool tst_comport::oneOf15FramesIsReceived()
{
    constexpr int kTypicalDelayMs = 40;
    for (int sent = 1; sent < 15; ++sent) {
        if (frameIsReceived(kTypicalDelayMs)) {
            return true;
        }
    }
    return frameIsReceived(kTimeoutMs);
}

bool tst_comport::frameIsReceived(int timeoutMs)
{
    m_frames->clear();
    send(kGood);
    return QTest::qWaitFor(
        [this] {
            return !m_frames->isEmpty() && m_frames->constLast().first().toByteArray() == kGood;
        },
        timeoutMs);
}

void tst_comport::metaObject_members_areInDeclaredOrder()
{
    const QByteArrayList expected{"finished_Port()", "error_(QString)", "outPort(QString)",
        "ComPortAnswer(int,int,QString,QString,QString)", "SendADCData(double,int16_t)",
        "CallCom()", "SendRes(QByteArray)", "SendResT(QByteArray)", "BitHeatEnable(bool)",
        "BitConnect(bool)", "convertTempData(QByteArray)", "convertWindData(QByteArray)",
        "readyToShowWindSpeed(int,double,double,double)",
        "readyToShowWindDirection(int,double,double,double)",
        "readyToShowWindCritical(int,double,double,double)", "readyToShowTemp(int,double)",
        "readyToShowClouds(QByteArray)", "statusBarMsg(QString)", "connectLED(bool)",
        "ComPortSettings(int,int,QString)", "ComPortSend()", "ComPortRecieve(QByteArray)",
        "CRC16_ModBusRTU(QByteArray,ushort)", "RecComData()", "HeatTempSet(int)",
        "DisconnectPort()", "ConnectPort()", "Write_Settings_Port(QString,int,int,int,int,int)",
        "process_Port()", "WriteToPort(QString,QByteArray)",
        "handleError(QSerialPort::SerialPortError)", "ReadInPort()"};
    const QMetaObject &meta = ComPort::staticMetaObject;
    const QByteArrayList actual = methodSignatures(meta);
    QCOMPARE(actual, expected);
}

void tst_comport::construction_boundsTheReadBuffer_andResetsCounter()
{
    noReplyCounter.storeRelaxed(9);
    ComPort port;
    QCOMPARE(port.port().readBufferSize(), 11);
    QCOMPARE(port.port().parent(), nullptr);
    QCOMPARE(noReplyCounter.loadRelaxed(), 0);
}

void tst_comport::connect_goodPort_configuresAndReports()
{
    m_port->Write_Settings_Port(m_line.path(), 9600, 8, 0, 1, 0);
    QVERIFY(!m_port->port().isOpen());
    m_port->ConnectPort();
    QCOMPARE(*m_texts,
        (QList<QVariantList>{{m_port->port().portName() + QStringLiteral(" >> Открыт!\r")}}));
    QVERIFY(m_line.path().endsWith(m_port->port().portName()));
    QCOMPARE(m_port->port().baudRate(), 9600);
    QCOMPARE(m_port->port().dataBits(), QSerialPort::Data8);
    QCOMPARE(m_port->port().parity(), QSerialPort::NoParity);
    QCOMPARE(m_port->port().stopBits(), QSerialPort::OneStop);
    QCOMPARE(m_port->port().flowControl(), QSerialPort::NoFlowControl);
    QCOMPARE(m_port->port().openMode(), QIODevice::ReadWrite);
#ifdef Q_OS_LINUX
    QVERIFY(m_log->lines().contains(QStringLiteral("sudo usermod -aG dialout <Login>")));
#endif
}

void tst_comport::connect_missingPort_reportsErrorString()
{
    m_port->Write_Settings_Port(QStringLiteral("/dev/no-such-port"), 9600, 8, 0, 1, 0);
    m_port->ConnectPort();
    QCOMPARE(m_texts->count(), 1);
    QSerialPort same;
    same.setPortName(QStringLiteral("/dev/no-such-port"));
    QVERIFY(!same.open(QIODevice::ReadWrite));
    QCOMPARE(m_texts->first().first().toString(), same.errorString());
    QVERIFY(!m_port->port().isOpen());
    // The hint about the group is only logged if the port is open.
    QVERIFY(m_log->lines().filter(QStringLiteral("dialout")).isEmpty());
}

void tst_comport::connect_noTerminal_reportsErrorString()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    m_port->Write_Settings_Port(file.fileName(), 9600, 8, 0, 1, 0);
    m_port->ConnectPort();
    QCOMPARE(m_texts->count(), 1);
    QVERIFY(!m_texts->first().first().toString().isEmpty());
    QVERIFY(!m_port->port().isOpen());
}

void tst_comport::connect_setterFails_closesAndReports()
{
    m_port->Write_Settings_Port(m_line.path(), -1, 8, 0, 1, 0);
    m_port->ConnectPort();
    QVERIFY(!m_port->port().isOpen());
    QCOMPARE(m_texts->count(), 1);
    QSerialPort other(m_line.path());
    QVERIFY(other.open(QIODevice::ReadWrite));
    QVERIFY(!other.setBaudRate(-1));
    QCOMPARE(*m_texts, (QList<QVariantList>{{other.errorString()}}));
}

void tst_comport::disconnect_closedPort_isSilent()
{
    m_port->DisconnectPort();
    QCOMPARE(m_texts->count(), 0);
}

void tst_comport::disconnect_openPort_reports()
{
    connectPort();
    m_port->DisconnectPort();
    QCOMPARE(*m_texts,
        (QList<QVariantList>{{m_port->port().portName() + QStringLiteral(" >> Закрыт!\r")}}));
    QVERIFY(!m_port->port().isOpen());
}

void tst_comport::portSearchSettings_anyParity_configureNoParity()
{
    connectPort();
    m_port->ComPortSettings(19200, QSerialPort::EvenParity, QStringLiteral("ttyUSB9"));
    QVERIFY(!m_port->port().isOpen());
    QCOMPARE(m_port->port().portName(), QStringLiteral("ttyUSB9"));
    QCOMPARE(m_port->port().baudRate(), 19200);
    QCOMPARE(m_port->port().parity(), QSerialPort::NoParity);
    QCOMPARE(m_port->port().dataBits(), QSerialPort::Data8);
    QCOMPARE(m_port->port().stopBits(), QSerialPort::OneStop);
    QCOMPARE(m_port->port().flowControl(), QSerialPort::NoFlowControl);
}

void tst_comport::frame_received_emitsInOrderThenResetsCounter()
{
    connectPort();
    noReplyCounter.storeRelaxed(5);
    QStringList order;
    const auto note = [&order](const char *name) {
        order << QStringLiteral("%1, counter %2")
                     .arg(QLatin1String(name))
                     .arg(noReplyCounter.loadRelaxed());
    };
    connect(m_port.get(), &ComPort::statusBarMsg, this, [&] { note("statusBarMsg"); });
    connect(m_port.get(), &ComPort::readyToShowClouds, this, [&] { note("readyToShowClouds"); });
    connect(m_port.get(), &ComPort::SendRes, this, [&] { note("SendRes"); });
    connect(m_port.get(), &ComPort::connectLED, this, [&] { note("connectLED"); });
    send(kGood);
    QTRY_COMPARE(noReplyCounter.loadRelaxed(), 0);
    QCOMPARE(order,
        QStringList({QStringLiteral("statusBarMsg, counter 5"),
            QStringLiteral("readyToShowClouds, counter 5"), QStringLiteral("SendRes, counter 5"),
            QStringLiteral("connectLED, counter 5")}));
}

void tst_comport::frame_oneWrite_isEmitted()
{
    connectPort();
    QSignalSpy replies(m_port.get(), &ComPort::SendRes);
    send(kGood);
    QTRY_COMPARE(*m_frames, (QList<QVariantList>{{kGood}}));
    QCOMPARE(replies, (QList<QVariantList>{{kGood}}));
    QCOMPARE(*m_lamp, (QList<QVariantList>{{true}}));
}

void tst_comport::frame_status_showsEachByte()
{
    connectPort();
    QSignalSpy status(m_port.get(), &ComPort::statusBarMsg);
    send(QByteArrayLiteral("H01234\xa5"
                           "678\r"));
    QTRY_COMPARE(status.count(), 1);
    QCOMPARE(status.first().first().toString(),
        QStringLiteral(
            "Получено сообщение: 0x48 0x30 0x31 0x32 0x33 0x34 0xA5 0x36 0x37 0x38 0x0D"));
}

void tst_comport::frame_resetsReplyCounter()
{
    connectPort();
    noReplyCounter.storeRelaxed(25);
    send(kGood);
    QTRY_COMPARE(noReplyCounter.loadRelaxed(), 0);
}

void tst_comport::frame_byteByByte_isEmitted()
{
    connectPort();
    for (int frame = 0; frame < 3; ++frame) {
        m_frames->clear();
        QSignalSpy events(&m_port->port(), &QIODevice::readyRead);
        for (const char byte : kGood) {
            events.clear();
            send(QByteArray(1, byte));
            QTRY_COMPARE(events.count(), 1);
        }
        QCOMPARE(*m_frames, (QList<QVariantList>{{kGood}}));
    }
    QVERIFY(!m_lamp->contains(QVariantList{false}));
}

void tst_comport::frame_twoPieces_isReadWhenComplete()
{
    connectPort();
    send(kGood.left(5));
    QTRY_COMPARE(m_port->port().bytesAvailable(), 5);
    QCOMPARE(m_frames->count(), 0);
    send(kGood.mid(5));
    QTRY_COMPARE(*m_frames, (QList<QVariantList>{{kGood}}));
}

void tst_comport::frame_wrongStart_isNotEmitted()
{
    connectPort();
    QSignalSpy events(&m_port->port(), &QIODevice::readyRead);
    send(QByteArrayLiteral("X112342345\r"));
    QTRY_COMPARE(events.count(), 1);
    QCOMPARE(m_port->port().bytesAvailable(), 0);
    QCOMPARE(m_frames->count(), 0);
}

void tst_comport::frame_lastByte_isNotChecked()
{
    connectPort();
    send(QByteArrayLiteral("H112342345X"));
    QTRY_COMPARE(m_frames->count(), 1);
}

// If the digit were kept as a frame start, it would form a false frame with the start of the next
// one.
void tst_comport::frame_digitCorruptedToStart_isOneFrame()
{
    connectPort();
    const QByteArray damaged = QByteArrayLiteral("H1123H2345\r");
    send(damaged);
    QTRY_COMPARE(m_frames->count(), 1);
    send(kGood);
    QTRY_COMPARE(*m_frames, (QList<QVariantList>{{damaged}, {kGood}}));
}

void tst_comport::twoFrames_atFirstReadEvent_doNotStall()
{
    connectPort();
    send(frameNumber(1) + frameNumber(2));
    QTRY_COMPARE(*m_frames, (QList<QVariantList>{{frameNumber(1)}, {frameNumber(2)}}));
}

void tst_comport::burst_of2000Frames_isReceivedCompletely()
{
    connectPort();
    QByteArray burst;
    for (int i = 0; i < 2000; ++i) {
        burst += frameNumber(i);
    }
    qsizetype sent = 0;
    QTRY_VERIFY_WITH_TIMEOUT(
        (sent += m_line.write(QByteArrayView(burst).sliced(sent)), m_frames->count() == 2000),
        kTimeoutMs);
    for (int i = 0; i < 2000; ++i) {
        QCOMPARE(m_frames->at(i).first().toByteArray(), frameNumber(i));
    }
}

void tst_comport::burst_throughWorkerThread_isReceivedCompletely()
{
    QThread worker;
    m_port->Write_Settings_Port(m_line.path(), 9600, 8, 0, 1, 0);
    m_port->moveToThread(&worker);
    m_port->port().moveToThread(&worker);
    worker.start();
    QMetaObject::invokeMethod(m_port.get(), &ComPort::ConnectPort, Qt::BlockingQueuedConnection);
    QStringList received; // the connection queues into this thread
    connect(m_port.get(), &ComPort::readyToShowClouds, this,
        [&received](const QByteArray &frame) { received << QString::fromLatin1(frame); });
    QByteArray burst;
    for (int i = 0; i < 2000; ++i) {
        burst += frameNumber(i);
    }
    qsizetype sent = 0;
    QTRY_VERIFY_WITH_TIMEOUT(
        (sent += m_line.write(QByteArrayView(burst).sliced(sent)), received.size() == 2000),
        kTimeoutMs);
    QMetaObject::invokeMethod(
        m_port.get(),
        [port = m_port.get()] {
            port->DisconnectPort();
            port->port().moveToThread(qApp->thread());
            port->moveToThread(qApp->thread());
        },
        Qt::BlockingQueuedConnection);
    worker.quit();
    worker.wait();
    for (int i = 0; i < 2000; ++i) {
        QCOMPARE(received.at(i).toLatin1(), frameNumber(i));
    }
}

void tst_comport::misses_everyTwelve_switchLampOff()
{
    for (int i = 0; i < 11; ++i) {
        Q_EMIT m_port->CallCom();
    }
    QCOMPARE(m_lamp->count(), 0);
    Q_EMIT m_port->CallCom();
    QCOMPARE(*m_lamp, (QList<QVariantList>{{false}}));
    for (int i = 0; i < 11; ++i) {
        Q_EMIT m_port->CallCom();
    }
    QCOMPARE(m_lamp->count(), 1);
    Q_EMIT m_port->CallCom();
    QCOMPARE(m_lamp->count(), 2);
}

void tst_comport::misses_frameBetween_restartTheCount()
{
    connectPort();
    for (int i = 0; i < 11; ++i) {
        Q_EMIT m_port->CallCom();
    }
    send(kGood);
    QTRY_COMPARE(m_frames->count(), 1);
    for (int i = 0; i < 11; ++i) {
        Q_EMIT m_port->CallCom();
    }
    QCOMPARE(*m_lamp, (QList<QVariantList>{{true}}));
}

void tst_comport::misses_beforeStop_doNotCountAfterStart()
{
    for (int round = 0; round < 2; ++round) {
        connectPort();
        for (int i = 0; i < 11; ++i) {
            Q_EMIT m_port->CallCom();
        }
        m_port->DisconnectPort();
    }
    QCOMPARE(m_lamp->count(), 0);
}

void tst_comport::fault_wholeFrames_recoversWithin15_data()
{
    QTest::addColumn<QByteArray>("bytes");
    for (int place = 0; place < ork2::kFrameLength; ++place) {
        const auto name = [place](const char *fault) {
            return QByteArray(fault) + " at " + QByteArray::number(place);
        };
        QTest::newRow(name("lost")) << QByteArray(kGood).remove(place, 1);
        QTest::newRow(name("added")) << QByteArray(kGood).insert(place, '5');
        QTest::newRow(name("added H")) << QByteArray(kGood).insert(place, 'H');
        QTest::newRow(name("added CR")) << QByteArray(kGood).insert(place, '\r');
        QTest::newRow(name("changed")) << QByteArray(kGood).replace(place, 1, "?");
        QTest::newRow(name("changed to CR")) << QByteArray(kGood).replace(place, 1, "\r");
        QTest::newRow(name("changed to H")) << QByteArray(kGood).replace(place, 1, "H");
        if (place > 0) {
            QTest::newRow(name("tail")) << kGood.mid(place);
        }
    }
}

void tst_comport::fault_wholeFrames_recoversWithin15()
{
    QFETCH(QByteArray, bytes);
    connectPort();
    QVERIFY(goodFrameIsReceived());
    send(bytes);
    for (int time = 0; time < 3; ++time) { // it recovers and continues to receive frames
        QVERIFY2(oneOf15FramesIsReceived(), "none of 15 good frames was received");
    }
}

void tst_comport::fault_stopAndStart_recovers_data()
{
    fault_wholeFrames_recoversWithin15_data();
}

void tst_comport::fault_stopAndStart_recovers()
{
    QFETCH(QByteArray, bytes);
    connectPort();
    QSignalSpy events(&m_port->port(), &QIODevice::readyRead);
    send(bytes + kGood.left(7));
    // The bytes may be in the buffer of the worker, the port or the system.
    QTRY_VERIFY(!events.isEmpty());
    m_port->DisconnectPort();
    m_port->ConnectPort();
    QVERIFY(goodFrameIsReceived());
    QCOMPARE(m_frames->count(), 1); // no frame contains bytes from before the stop
}

void tst_comport::noise_wholeFrames_recoversWithin15_data()
{
    QTest::addColumn<int>("length");
    for (const int length :
        {1, 2, 5, 10, 11, 12, 21, 22, 23, 33, 50, 100, 150, 200, 250, 299, 300}) {
        QTest::newRow(QByteArray::number(length) + " bytes") << length;
    }
}

void tst_comport::noise_wholeFrames_recoversWithin15()
{
    QFETCH(int, length);
    connectPort();
    QRandomGenerator random(static_cast<quint32>(length));
    for (int round = 0; round < 5; ++round) {
        QByteArray noise(length, '\0');
        for (char &byte : noise) {
            // Starts and ends of frames are the most critical bytes, so they occur often.
            constexpr std::array<char, 4> kCritical{'H', '\r', '0', '\xff'};
            byte = random.bounded(2) != 0 ? kCritical.at(random.bounded(4U))
                                          : static_cast<char>(random.bounded(256));
        }
        send(noise);
        QVERIFY2(oneOf15FramesIsReceived(), "none of 15 good frames was received");
    }
}

void tst_comport::misalignedCarriageReturn_isDiscarded()
{
    connectPort();
    send(QByteArrayLiteral("2342345\rH11"));
    QVERIFY2(oneOf15FramesIsReceived(), "none of 15 good frames was received");
}

void tst_comport::unplugging_reportsErrorAndClosed()
{
    connectPort();
    m_line.close();
    QTRY_COMPARE(m_texts->count(), 2);
    QVERIFY(!m_texts->at(0).first().toString().isEmpty());
    QVERIFY(m_texts->at(1).first().toString().endsWith(QStringLiteral(" >> Закрыт!\r")));
    QVERIFY(!m_port->port().isOpen());
}

// Reading the signals of an adapter may fail while its line works.
void tst_comport::adapter_signalsFail_staysOpen()
{
#ifndef Q_OS_LINUX
    QSKIP("The response of an adapter can be simulated on Linux only");
#else
    connectPort();
    QTimer &watch = ComPortProbe::watch(*m_port);
    QVERIFY(watch.isActive());
    QSignalSpy checks(&watch, &QTimer::timeout);
    watch.start(1);
    g_signalsFail = true;
    QTRY_VERIFY(checks.count() >= 10);
    QCOMPARE(m_texts->count(), 0);
    m_line.close(); // a removed adapter is still detected
    QTRY_VERIFY(!m_port->port().isOpen());
    g_signalsFail = false;
    QCOMPARE(m_texts->count(), 2);
#endif
}

void tst_comport::otherErrors_areIgnored()
{
    connectPort();
    for (const auto error : {QSerialPort::NoError, QSerialPort::PermissionError,
             QSerialPort::ReadError, QSerialPort::TimeoutError, QSerialPort::UnknownError}) {
        m_port->handleError(error);
    }
    QCOMPARE(m_texts->count(), 0);
    m_port->handleError(QSerialPort::ResourceError);
    QCOMPARE(m_texts->count(), 2);
    m_port->handleError(QSerialPort::ResourceError); // the port is already closed
    QCOMPARE(m_texts->count(), 2);
}

void tst_comport::request_isSentByteForByte_data()
{
    QTest::addColumn<bool>("heater");
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("heater off") << false << QByteArray::fromHex("3A00410000AC110D");
    QTest::newRow("heater on") << true << QByteArray::fromHex("3A00410100AD810D");
}

void tst_comport::request_isSentByteForByte()
{
    QFETCH(const bool, heater);
    QFETCH(const QByteArray, request);
    connectPort();
    ComPortProbe::setHeater(*m_port, heater);
    // The slot clears the port immediately after the write, so the other end must read quickly.
    std::atomic<bool> seen = false;
    std::atomic<bool> finished = false;
    std::thread instrument([&] {
        QByteArray received;
        while (!seen && !finished) {
            received += m_line.drain();
            seen = received.contains(request);
        }
    });
    const QDeadlineTimer deadline(kTimeoutMs);
    while (!seen && !deadline.hasExpired()) {
        m_port->ComPortSend();
    }
    finished = true;
    instrument.join();
    QVERIFY(seen);
    QCOMPARE(m_port->port().bytesToWrite(), 0);
    QVERIFY(m_log->lines().contains(
        QStringLiteral("ComSend \"%1\"").arg(QLatin1String(request.toHex(' ')))));
}

void tst_comport::request_withoutPendingReply_isReported()
{
    connectPort();
    QSignalSpy pending(m_port.get(), &ComPort::BitConnect);
    QSignalSpy gathered(&m_port->port(), &QIODevice::readyRead);
    send(QByteArrayLiteral("X0123456789")); // not a frame, so it stays in the buffer
    QTRY_VERIFY(!gathered.isEmpty());
    QCOMPARE(m_port->port().bytesAvailable(), 0);
    m_port->ComPortSend();
    QCOMPARE(pending.count(), 0);
    m_port->ComPortSend();
    QCOMPARE(pending, (QList<QVariantList>{{false}}));
}

void tst_comport::request_heaterSetPoint_isIgnored()
{
    connectPort();
    m_port->HeatTempSet(40);
    m_port->ComPortSend();
    QVERIFY(m_log->lines().contains(QStringLiteral("ComSend \"3a 00 41 00 00 ac 11 0d\"")));
}

void tst_comport::sending_closedPort_isHarmless()
{
    QSignalSpy pending(m_port.get(), &ComPort::BitConnect);
    m_port->Write_Settings_Port(QStringLiteral("/dev/no-such-port"), 9600, 8, 0, 1, 0);
    m_port->ComPortSend();
    QCOMPARE(pending, (QList<QVariantList>{{false}}));
    m_port->WriteToPort(QStringLiteral("Wind"), QByteArrayLiteral("12345xyz"));
    QVERIFY(!m_port->port().isOpen());
    QCOMPARE(m_port->port().bytesToWrite(), 0);
}

void tst_comport::crc_asText_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ushort>("length");
    QTest::addColumn<QByteArray>("text");
    const QByteArray request = QByteArray::fromHex("3A00410000");
    QTest::newRow("no bytes") << request << ushort{0} << QByteArray("ffff");
    QTest::newRow("request") << request << ushort{5} << QByteArray("ac11");
    QTest::newRow("length exceeds size") << request << ushort{500} << QByteArray("ac11");
    // CRC 0x4B37, swapped 0x374B.
    QTest::newRow("123456789") << QByteArray("123456789") << ushort{9} << QByteArray("374b");
    // CRC 0xDB05, swapped 0x05DB: the leading zero is not written.
    QTest::newRow("leading zero") << QByteArray("201") << ushort{3} << QByteArray("5db");
}

void tst_comport::crc_asText()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ushort, length);
    QFETCH(QByteArray, text);
    QCOMPARE(m_port->CRC16_ModBusRTU(bytes, length), text);
}

void tst_comport::legacyCommand_placeholders_areReplacedByCrc_data()
{
    QTest::addColumn<QString>("sensor");
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QByteArray>("removed");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<qint64>("replyLength");
    QTest::newRow("wind") << QStringLiteral("Wind") << QByteArray::fromHex("0102030405")
                          << QByteArray("xyz") << QByteArray("\r") << qint64{15};
    QTest::newRow("another") << QStringLiteral("Temp") << QByteArray::fromHex("010203040506")
                             << QByteArray("xy") << QByteArray() << qint64{9};
}

void tst_comport::legacyCommand_placeholders_areReplacedByCrc()
{
    QFETCH(QString, sensor);
    QFETCH(QByteArray, kept);
    QFETCH(QByteArray, removed);
    QFETCH(QByteArray, end);
    QFETCH(qint64, replyLength);
    connectPort();
    const QByteArray crc = QByteArray::fromHex(
        m_port->CRC16_ModBusRTU(kept, static_cast<ushort>(kept.size())).rightJustified(4, '0'));
    m_port->WriteToPort(sensor, kept + removed);
    QByteArray sent;
    QTRY_COMPARE((sent += m_line.drain(), sent), kept + crc + end);
    QCOMPARE(m_port->port().readBufferSize(), replyLength);
}

void tst_comport::legacyRead_emitsText()
{
    connectPort();
    QSignalSpy texts(m_port.get(), &ComPort::outPort);
    send("при");
    QTRY_COMPARE(m_port->port().bytesAvailable(), 6);
    m_port->ReadInPort();
    QCOMPARE(texts, (QList<QVariantList>{{QStringLiteral("при")}}));
}

void tst_comport::entry_and_destruction_areLogged()
{
    m_port->process_Port();
    QVERIFY(m_log->lines().contains(QStringLiteral("Com port in separate Thread!")));
    QSignalSpy finished(m_port.get(), &ComPort::finished_Port);
    m_port.reset();
    QCOMPARE(finished.count(), 1);
    QVERIFY(m_log->lines().contains(QStringLiteral("Bye-bye Com port thread!")));
}

QTEST_GUILESS_MAIN(tst_comport)
#include "tst_comport.moc"
