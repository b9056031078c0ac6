// SPDX-License-Identifier: GPL-3.0-or-later
#include "portsearch.h"

#include <QSerialPortInfo>

namespace ork2 {

namespace {

constexpr quint16 kAdapterIdBits = 0x6001;

} // namespace

QList<PresentPort> presentPorts()
{
    QList<PresentPort> present;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        present << PresentPort{port.portName(), port.productIdentifier()};
    }
    return present;
}

std::optional<QString> instrumentPort(const QList<PresentPort> &ports)
{
    int candidates = 0;
    QString name;
    for (const PresentPort &port : ports) {
        // Intentional: one common bit is sufficient, so that adapters of many vendors match.
        if ((port.productId & kAdapterIdBits) != 0) {
            ++candidates;
            name = port.name;
        }
    }
    return candidates == 1 ? std::optional(name) : std::nullopt;
}

} // namespace ork2
