// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "convertdata.h"

#include <algorithm>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray frame = fuzz::bytes(data, size);
    convertData parser;
    QByteArray emitted;
    // The values must be in range for any bytes.
    const auto expect = [&](char what, double limit) {
        return [&emitted, &frame, what, limit](int address, double a, double b, double c) {
            emitted += what;
            fuzz::check(address == static_cast<std::uint8_t>(frame.at(1)), "address is as sent");
            fuzz::check(std::min({a, b, c}) >= 0.0 && std::max({a, b, c}) <= limit, "range");
        };
    };
    // Integer part and tenths have two digits each: at most (990 + 99) / 10.
    QObject::connect(&parser, &convertData::readyToShowWindSpeed, &parser, expect('s', 108.9));
    QObject::connect(&parser, &convertData::readyToShowWindDirection, &parser, expect('d', 65535));
    QObject::connect(&parser, &convertData::readyToShowWindCritical, &parser, expect('c', 108.9));
    parser.parseWindData(frame);
    fuzz::check(emitted == (frame.size() == 24 ? "sdc" : ""), "three signals per complete frame");
    return 0;
}
