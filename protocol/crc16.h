// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

namespace ork2 {

// CRC-16/MODBUS of the bytes: polynomial 0x8005 reflected (0xA001), start 0xFFFF, no final XOR
// ("Modbus over serial line" V1.02, 6.2.2). No bytes give 0xFFFF. On the wire: low byte first.
[[nodiscard]] quint16 crc16Modbus(QByteArrayView bytes);

} // namespace ork2
