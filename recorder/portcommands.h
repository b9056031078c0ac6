// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class ComPort;

namespace ork2 {

// Calls the serial worker's slots in its thread and reports the results, which the worker's own
// signals contain only as texts. Lives in the worker's thread; connect to it through queued
// connections.
class PortCommands : public QObject
{
    Q_OBJECT

public:
    explicit PortCommands(ComPort &comPort);

public Q_SLOTS:
    void open(const QString &device); // with the settings of the instrument
    void close();
    void answer(); // reports that the thread processes its events

Q_SIGNALS:
    void opened(bool open, const QString &device, int error); // a QSerialPort::SerialPortError
    void closed();
    void answered();

private:
    ComPort &m_comPort;
};

} // namespace ork2
