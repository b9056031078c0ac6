// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ork2 {

struct PresentPort
{
    QString name;
    quint16 productId = 0; // of the USB adapter; 0: none known
};

// The serial ports of this machine, in the order in which the system lists them.
[[nodiscard]] QList<PresentPort> presentPorts();

// Name of the only port that looks like the instrument's adapter; none if there is no such port or
// more than one.
[[nodiscard]] std::optional<QString> instrumentPort(const QList<PresentPort> &ports);

} // namespace ork2
