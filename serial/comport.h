// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QTimer>

namespace ork2 {
inline constexpr int kMissesUntilLinkLost = 12; // consecutive reads without a frame
inline constexpr int kWriteTimeoutMs = 200;
inline constexpr int kReleaseTimeMs = 500;
inline constexpr int kPortWatchMs = 1000; // how often an open port is checked for its device
}

// The one serial port of the instrument: opens and closes it on request, gathers the instrument's
// 11-byte frames and hands each on. A lost or added byte, or an opening in mid-frame, costs a frame
// or two, in whatever pieces the adapter delivers; the next ones are read again. Lives in a worker
// thread of its own; every slot runs there and is reached from other threads through queued
// connections only. Failures are reported through error_ with the port's own text; nothing is
// retried.
class ComPort : public QObject
{
    Q_OBJECT

public:
    explicit ComPort(QObject *parent = nullptr);
    ~ComPort() override;
    Q_DISABLE_COPY_MOVE(ComPort)

    // The port has no parent, so whoever moves this object to a thread moves the port as well.
    [[nodiscard]] QSerialPort &port() { return m_port; }
    void clearReceiveBuffer() { m_buffer.clear(); }

    // Has the port closed in its own thread, which may go on running; from any other thread. An
    // open port leaves its lock file behind, which keeps other users' programs from it. Calls that
    // are still queued are dropped, since each opening waits for the disk. Waits at most
    // kReleaseTimeMs: a worker that hangs in its driver is left as it is.
    void release();

Q_SIGNALS:
    void finished_Port();
    void error_(QString err); // port opened, port closed, or the port's error text
    void outPort(QString data);
    void ComPortAnswer(int ComB, int ComP, QString temp1, QString temp2, QString ComI);
    void SendADCData(double d1, int16_t d2);
    void CallCom();
    void SendRes(QByteArray data);
    void SendResT(QByteArray data);
    void BitHeatEnable(bool set);
    void BitConnect(bool set);
    void convertTempData(QByteArray data);
    void convertWindData(QByteArray data);
    void readyToShowWindSpeed(int address, double data1, double data2, double data3);
    void readyToShowWindDirection(int address, double data1, double data2, double data3);
    void readyToShowWindCritical(int address, double data1, double data2, double data3);
    void readyToShowTemp(int address, double Temp);
    void readyToShowClouds(QByteArray);
    void statusBarMsg(QString);
    void connectLED(bool); // true with each frame, false after kMissesUntilLinkLost misses

public Q_SLOTS:
    // ComParity is stored, but the parity is always set to none, intentional: the instrument knows
    // no other.
    void ComPortSettings(int ComBaudRate, int ComParity, QString ComName);
    void ComPortSend(); // kept ready; the instrument sends unasked, so nothing calls it
    void ComPortRecieve(QByteArray data);
    // CRC of the first len bytes, byte-swapped, as lower-case hexadecimal without leading zeros.
    QByteArray CRC16_ModBusRTU(QByteArray buf, ushort len);
    void RecComData();
    void HeatTempSet(int temp);
    void DisconnectPort();
    void ConnectPort();
    // The numbers are values of the QSerialPort enums; the port itself is not touched.
    void Write_Settings_Port(
        QString name, int baudrate, int DataBits, int Parity, int StopBits, int FlowControl);
    void process_Port();
    // Legacy path without a caller: appends the CRC to a sensor's command and sends it.
    void WriteToPort(QString sensor, QByteArray data);
    void handleError(QSerialPort::SerialPortError error);
    void ReadInPort(); // legacy path: everything the port holds, as text

private:
    // Tests set the heater flag, which no slot does.
    friend class ComPortProbe;

    struct PortSettings
    {
        QString name;
        int baudrate = 0;
        int dataBits = 0;
        int parity = 0;
        int stopBits = 0;
        int flowControl = 0;
    };

    [[nodiscard]] bool configurePort();
    [[nodiscard]] qint64 missingBytes() const;
    void passOn();
    void checkDevicePresent();
    void appendCrc(QByteArray &frame, qsizetype covered);
    void reportPortError();

    QSerialPort m_port;
    QByteArray m_buffer; // bytes of the frame being gathered
    PortSettings m_settings;
    int m_misses = 0;
    bool m_resynchronized = false; // since the last frame, see RecComData
    int m_comBaudRate = 0;
    int m_comParity = 0;
    QString m_comName;
    QTimer *m_timer = nullptr; // created, never started
    QTimer m_watch;            // runs while the port is open
    int m_heaterSetPoint = 0;  // written by HeatTempSet, read by nothing
    bool m_heater = false;     // no slot sets it, so requests carry 0
};
