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

// The serial port of the instrument. Opens and closes the port on request, assembles the 11-byte
// frames of the instrument and emits each one. A lost or additional byte, or a port opened in the
// middle of a frame, costs one or two frames, regardless of how the adapter splits the data. Lives
// in a separate worker thread; all slots run there and are called from other threads through queued
// connections only. Failures are reported through error_ with the port's error string. Nothing is
// retried.
class ComPort : public QObject
{
    Q_OBJECT

public:
    explicit ComPort(QObject *parent = nullptr);
    ~ComPort() override;
    Q_DISABLE_COPY_MOVE(ComPort)

    // The port has no parent: code that moves this object to a thread must also move the port.
    [[nodiscard]] QSerialPort &port() { return m_port; }
    void clearReceiveBuffer() { m_buffer.clear(); }

    // Closes the port in the worker thread, which may continue to run. Call from any other thread.
    // A port that is still open when the process exits leaves its lock file behind, which prevents
    // other users from opening the port. Queued calls are dropped because each open waits for the
    // disk. Waits at most kReleaseTimeMs, in case the worker is blocked in the driver.
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
    // ComParity is stored, but the parity is always set to none. Intentional: the instrument
    // supports no other.
    void ComPortSettings(int ComBaudRate, int ComParity, QString ComName);
    void ComPortSend(); // not called: the instrument sends without a request
    void ComPortRecieve(QByteArray data);
    // Byte-swapped CRC of the first len bytes as lower-case hexadecimal without leading zeros.
    QByteArray CRC16_ModBusRTU(QByteArray buf, ushort len);
    void RecComData();
    void HeatTempSet(int temp);
    void DisconnectPort();
    void ConnectPort();
    // The numbers are values of the QSerialPort enums. Takes effect with the next ConnectPort().
    void Write_Settings_Port(
        QString name, int baudrate, int DataBits, int Parity, int StopBits, int FlowControl);
    void process_Port();
    // Legacy, not called: appends the CRC to a sensor command and sends it.
    void WriteToPort(QString sensor, QByteArray data);
    void handleError(QSerialPort::SerialPortError error);
    void ReadInPort(); // legacy, not called: emits all available data as text

private:
    // Tests set the heater flag, which no slot sets.
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
    void deliverFrame();
    void checkDevicePresent();
    void appendCrc(QByteArray &frame, qsizetype covered);
    void reportPortError();

    QSerialPort m_port;
    QByteArray m_buffer; // bytes of the incomplete frame
    PortSettings m_settings;
    int m_misses = 0;
    bool m_resynchronized = false; // since the last frame, see RecComData
    int m_comBaudRate = 0;
    int m_comParity = 0;
    QString m_comName;
    QTimer *m_timer = nullptr; // created, never started
    QTimer m_watch;            // runs while the port is open
    int m_heaterSetPoint = 0;  // set by HeatTempSet, not used
    bool m_heater = false;     // not set by any slot
};
