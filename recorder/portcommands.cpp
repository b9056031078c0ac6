// SPDX-License-Identifier: GPL-3.0-or-later
#include "portcommands.h"

#include "comport.h"

namespace ork2 {

PortCommands::PortCommands(ComPort &comPort)
    : m_comPort(comPort)
{ }

void PortCommands::open(const QString &device)
{
    m_comPort.Write_Settings_Port(device, QSerialPort::Baud9600, QSerialPort::Data8,
        QSerialPort::NoParity, QSerialPort::OneStop, QSerialPort::NoFlowControl);
    m_comPort.ConnectPort();
    Q_EMIT opened(m_comPort.port().isOpen(), device, m_comPort.port().error());
}

void PortCommands::close()
{
    m_comPort.DisconnectPort();
    Q_EMIT closed();
}

void PortCommands::answer()
{
    Q_EMIT answered();
}

} // namespace ork2
