// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "convertdata.h"

#include <QtEndian>

#include <bit>
#include <cmath>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray frame = fuzz::bytes(data, size);
    convertData parser;
    int emitted = 0;
    QObject::connect(
        &parser, &convertData::readyToShowTemp, &parser, [&](int address, double value) {
            ++emitted;
            fuzz::check(address == static_cast<std::uint8_t>(frame.at(0)), "address is as sent");
            // For normal IEEE 754 numbers, the result must be the same.
            const quint32 low = qFromBigEndian<quint16>(frame.constData() + 3);
            const quint32 high = qFromBigEndian<quint16>(frame.constData() + 5);
            const auto single = std::bit_cast<float>(high << 16U | low);
            fuzz::check(!std::isnormal(single) || value == static_cast<double>(single), "value");
            fuzz::check(std::isfinite(value) && value != 0.0, "always finite, never zero");
            fuzz::check(std::signbit(value) == ((high & 0x8000U) != 0), "sign");
        });
    parser.parseTempData(frame);
    fuzz::check(emitted == (frame.size() == 9 ? 1 : 0), "one signal per complete frame");
    return 0;
}
