// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ork2 {

struct PresentPort
{
    QString name;
    quint16 productId = 0; // of the USB adapter; 0: unknown
};

// Returns the serial ports of this machine in the order reported by the system.
[[nodiscard]] QList<PresentPort> presentPorts();

// Returns the name of the port whose product identifier matches the instrument's adapter, or
// std::nullopt if there is no such port or more than one.
[[nodiscard]] std::optional<QString> instrumentPort(const QList<PresentPort> &ports);

} // namespace ork2
