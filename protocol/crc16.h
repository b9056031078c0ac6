// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

namespace ork2 {

// Returns the CRC-16/MODBUS of the bytes: polynomial 0x8005 reflected (0xA001), initial value
// 0xFFFF, no final XOR ("Modbus over serial line" V1.02, 6.2.2). Returns 0xFFFF if there are no
// bytes. The low byte is sent first.
[[nodiscard]] quint16 crc16Modbus(QByteArrayView bytes);

} // namespace ork2
