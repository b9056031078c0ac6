// SPDX-License-Identifier: GPL-3.0-or-later
#include "comport.h"

#include "crc16.h"
#include "frames.h"
#include "framesync.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QSysInfo>
#include <QThread>

#include <atomic>
#include <memory>

#if defined(Q_OS_UNIX) && !defined(ORK2_WITHOUT_POLL)
#define ORK2_CAN_POLL
#include <poll.h>
#endif

namespace {

constexpr qsizetype kShortText = 12; // shorter hexadecimal texts are shown without "0x"
constexpr qsizetype kBytePitch = 5;  // length of "0x48 ", one byte of the displayed text
constexpr auto kPendingWritePauseMs = 300;
constexpr qint64 kRequestLength = 8;

// The bytes removed from a sensor command before its CRC is appended, and the expected reply
// length.
struct SensorCommand
{
    qsizetype removeAt;
    qsizetype removeCount;
    bool carriageReturn;
    qint64 replyLength;
};
constexpr SensorCommand kWindCommand{5, 3, true, 15};
constexpr SensorCommand kOtherCommand{6, 2, false, 9};

// Name of the port last received from the controller's port search. Worker thread only. Not used.
QString plugPlayPortName;

void logLinuxHint()
{
    if (QSysInfo::kernelType() == u"linux") {
        qDebug() << "sudo usermod -aG dialout <Login>";
    }
}

QString messageText(const QByteArray &frame)
{
    QString text = QString::fromLatin1(frame.toHex(' ').toUpper());
    if (text.size() >= kShortText) {
        for (qsizetype byte = 0; byte < ork2::kFrameLength; ++byte) {
            text.insert(byte * kBytePitch, QLatin1String("0x"));
        }
    }
    return text;
}

} // namespace

ComPort::ComPort(QObject *parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
    , m_watch(this)
{
    // Limit the buffer from the start: if two frames are pending at the first readyRead(), an
    // unlimited buffer would contain 22 bytes, never 11, and no frame would ever be read.
    m_port.setReadBufferSize(ork2::kFrameLength);
    connect(&m_port, SIGNAL(readyRead()), this, SLOT(RecComData()));
    connect(this, SIGNAL(CallCom()), this, SLOT(RecComData()));
    connect(this, SIGNAL(SendRes(QByteArray)), this, SLOT(ComPortRecieve(QByteArray)));
    // Without this, an unplugged adapter would stay open without any error.
    connect(&m_port, SIGNAL(errorOccurred(QSerialPort::SerialPortError)), this,
        SLOT(handleError(QSerialPort::SerialPortError)));
    m_watch.setInterval(ork2::kPortWatchMs);
    connect(&m_watch, &QTimer::timeout, this, &ComPort::checkDevicePresent);
    connect(&m_port, &QSerialPort::aboutToClose, &m_watch, &QTimer::stop);
    noReplyCounter.storeRelaxed(0);
}

ComPort::~ComPort()
{
    qDebug() << "Bye-bye Com port thread!";
    Q_EMIT finished_Port();
}

void ComPort::process_Port()
{
    qDebug() << "Com port in separate Thread!";
}

void ComPort::Write_Settings_Port(
    QString name, int baudrate, int DataBits, int Parity, int StopBits, int FlowControl)
{
    m_settings = {name, baudrate, DataBits, Parity, StopBits, FlowControl};
}

void ComPort::ConnectPort()
{
    m_port.setPortName(m_settings.name);
    if (!m_port.open(QIODevice::ReadWrite)) {
        reportPortError();
        return;
    }
    // Data left over from a previous connection would break the frame alignment of this one.
    m_buffer.clear();
    m_port.clear();
    m_misses = 0;
    m_resynchronized = false;
    logLinuxHint();
    const bool configured = configurePort();
    if (!m_port.isOpen()) {
        return; // the device was removed, which has already been reported
    }
    if (!configured) {
        reportPortError();
        return;
    }
    m_watch.start();
    Q_EMIT error_(m_port.portName() + QStringLiteral(" >> Открыт!\r"));
}

bool ComPort::configurePort()
{
    return m_port.setBaudRate(m_settings.baudrate)
        && m_port.setDataBits(static_cast<QSerialPort::DataBits>(m_settings.dataBits))
        && m_port.setParity(static_cast<QSerialPort::Parity>(m_settings.parity))
        && m_port.setStopBits(static_cast<QSerialPort::StopBits>(m_settings.stopBits))
        && m_port.setFlowControl(static_cast<QSerialPort::FlowControl>(m_settings.flowControl));
}

void ComPort::reportPortError()
{
    const QString text = m_port.errorString(); // before the close, which may reset it
    if (m_port.isOpen()) {
        m_port.close();
    }
    Q_EMIT error_(QString::fromLocal8Bit(text.toLocal8Bit()));
}

void ComPort::DisconnectPort()
{
    if (m_port.isOpen()) {
        m_port.close();
        Q_EMIT error_(m_port.portName() + QStringLiteral(" >> Закрыт!\r"));
    }
}

void ComPort::release()
{
    QCoreApplication::removePostedEvents(this, QEvent::MetaCall);
    const auto released = std::make_shared<std::atomic_bool>(false);
    QMetaObject::invokeMethod(this, [this, released] {
        DisconnectPort();
        *released = true;
    });
    const QDeadlineTimer deadline(ork2::kReleaseTimeMs);
    while (!*released && !deadline.hasExpired()) {
        QThread::msleep(1);
    }
}

// A removed device returns end of file forever, which Qt reports as various errors or not at all.
// Querying the pinout signals makes the port detect the actual error and report a ResourceError.
// poll() is called first because a working adapter may occasionally fail to return its signals, and
// that must not stop the measurement. Without poll(), the signals are not queried either.
void ComPort::checkDevicePresent()
{
#ifdef ORK2_CAN_POLL
    pollfd line = {m_port.handle(), 0, 0};
    if (::poll(&line, 1, 0) == 1) {
        m_port.pinoutSignals();
    }
#endif
}

void ComPort::handleError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::ResourceError && m_port.isOpen()) {
        Q_EMIT error_(m_port.errorString());
        DisconnectPort();
    }
}

void ComPort::ComPortSettings(int ComBaudRate, int ComParity, QString ComName)
{
    m_comBaudRate = ComBaudRate;
    m_comParity = ComParity;
    m_comName = ComName;
    plugPlayPortName = ComName;
    m_port.close();
    m_port.setPortName(m_comName);
    m_port.setBaudRate(m_comBaudRate);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setParity(QSerialPort::NoParity); // regardless of ComParity
    m_port.setFlowControl(QSerialPort::NoFlowControl);
}

qint64 ComPort::missingBytes() const
{
    const qint64 missing = ork2::kFrameLength - m_buffer.size();
    // A full buffer that is not a frame keeps growing, so that the next bytes get it discarded.
    return missing > 0 ? missing : ork2::kFrameLength;
}

void ComPort::RecComData()
{
    if (m_buffer.size() > ork2::kFrameLength) {
        m_buffer.clear();
        m_port.clear();
    }
    m_port.setReadBufferSize(missingBytes());
    if (m_port.bytesAvailable() == missingBytes()) {
        m_buffer += m_port.readAll();
    }
    const bool full = m_buffer.size() == ork2::kFrameLength;
    const qsizetype done = full ? ork2::bytesBeforeNextFrame(m_buffer) : 0;
    if (full && m_buffer.startsWith(ork2::kFrameStart)) {
        deliverFrame();
    } else if (done > 0 && !m_resynchronized) {
        // The start of the next frame has been received. Allowed only once between two frames, so
        // that endless garbage is still reported as a lost connection.
        m_resynchronized = true;
        m_misses = 0;
    } else if (++m_misses >= ork2::kMissesUntilLinkLost) {
        m_misses = 0;
        Q_EMIT connectLED(false);
    }
    m_buffer.remove(0, done);
    // Let the port buffer exactly the missing bytes and none of the following frame.
    m_port.setReadBufferSize(missingBytes());
}

void ComPort::deliverFrame()
{
    qDebug() << "ComSend" << m_buffer.toHex(' ');
    Q_EMIT statusBarMsg(QStringLiteral("Получено сообщение: ") + messageText(m_buffer));
    Q_EMIT SendRes(m_buffer);
    Q_EMIT connectLED(true);
    m_misses = 0;
    m_resynchronized = false;
    noReplyCounter.storeRelaxed(0);
}

void ComPort::ComPortRecieve(QByteArray data)
{
    qDebug() << "Msg: " << data.toHex(' ');
    Q_EMIT readyToShowClouds(data);
}

QByteArray ComPort::CRC16_ModBusRTU(QByteArray buf, ushort len)
{
    const quint16 crc =
        ork2::crc16Modbus(QByteArrayView(buf).first(qMin<qsizetype>(len, buf.size())));
    const auto swapped = static_cast<quint16>((crc >> 8U) | (crc << 8U));
    return QByteArray::number(swapped, 16);
}

void ComPort::appendCrc(QByteArray &frame, qsizetype covered)
{
    // CRC16_ModBusRTU() returns text, with the low byte of the CRC first.
    const uint swapped = CRC16_ModBusRTU(frame, static_cast<ushort>(covered)).toUInt(nullptr, 16);
    frame += static_cast<char>(swapped >> 8U);
    frame += static_cast<char>(swapped & 0xFFU);
}

void ComPort::ComPortSend()
{
    QByteArray request;
    request += ork2::kRequestStart;
    request += '\0';
    request += ork2::kRequestCommand;
    request += m_heater ? '\1' : '\0';
    request += '\0';
    appendCrc(request, ork2::kRequestCrcInput);
    request += ork2::kCarriageReturn;

    m_port.open(QIODevice::ReadWrite); // fails if already open, which is harmless
    logLinuxHint();
    if (m_port.clear()) {
        m_port.write(request);
        m_port.waitForBytesWritten(ork2::kWriteTimeoutMs);
    }
    if (m_buffer.isEmpty()) {
        Q_EMIT BitConnect(false);
    }
    m_buffer.clear();
    m_port.clear();
    qDebug() << "ComSend" << request.toHex(' ');
}

void ComPort::HeatTempSet(int temp)
{
    m_heaterSetPoint = temp;
}

void ComPort::WriteToPort(QString sensor, QByteArray data)
{
    const SensorCommand &command = sensor == u"Wind" ? kWindCommand : kOtherCommand;
    data.remove(command.removeAt, command.removeCount);
    appendCrc(data, data.size());
    if (command.carriageReturn) {
        data += ork2::kCarriageReturn;
    }
    m_port.setReadBufferSize(command.replyLength);
    if (m_port.isOpen()) {
        m_port.write(data);
        m_port.waitForBytesWritten(ork2::kWriteTimeoutMs);
    }
    qDebug() << "ComSend" << data.toHex(' ');
    if (m_port.bytesToWrite() == kRequestLength) {
        QThread::msleep(kPendingWritePauseMs);
    }
}

void ComPort::ReadInPort()
{
    Q_EMIT outPort(QString::fromUtf8(m_port.readAll()));
}
