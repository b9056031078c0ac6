// SPDX-License-Identifier: GPL-3.0-or-later
#include "crc16.h"

namespace ork2 {

quint16 crc16Modbus(QByteArrayView bytes)
{
    constexpr quint16 kStart = 0xFFFF;
    constexpr quint16 kReflectedPolynomial = 0xA001;
    quint16 crc = kStart;
    for (const char byte : bytes) {
        crc ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            const bool lowestSet = (crc & 1U) != 0;
            crc = static_cast<quint16>(crc >> 1U);
            if (lowestSet) {
                crc ^= kReflectedPolynomial;
            }
        }
    }
    return crc;
}

} // namespace ork2
