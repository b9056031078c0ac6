// SPDX-License-Identifier: GPL-3.0-or-later
// Measures the duration of the parsers and of the CRC per frame.
#include "convertdata.h"
#include "crc16.h"

#include <benchmark/benchmark.h>

namespace {

void parseCloudFrame(benchmark::State &state)
{
    convertData parser;
    qsizetype seen = 0;
    QObject::connect(&parser, &convertData::readyToShowClouds, &parser,
        [&seen](const QString &first, const QString &) { seen += first.size(); });
    const QByteArray frame = QByteArrayLiteral("H112340000\r");
    for ([[maybe_unused]] auto round : state) {
        parser.parseCloudData(frame);
    }
    benchmark::DoNotOptimize(seen);
}
BENCHMARK(parseCloudFrame);

void parseWindFrame(benchmark::State &state)
{
    convertData parser;
    const QByteArray frame(24, '\x12');
    for ([[maybe_unused]] auto round : state) {
        parser.parseWindData(frame);
    }
}
BENCHMARK(parseWindFrame);

void parseTemperatureFrame(benchmark::State &state)
{
    convertData parser;
    const QByteArray frame(9, '\x41');
    for ([[maybe_unused]] auto round : state) {
        parser.parseTempData(frame);
    }
}
BENCHMARK(parseTemperatureFrame);

void crcOfRequest(benchmark::State &state)
{
    const QByteArray request = QByteArray::fromHex("3A00410000");
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(ork2::crc16Modbus(request));
    }
}
BENCHMARK(crcOfRequest);

void crcOfReply(benchmark::State &state)
{
    const QByteArray reply = QByteArrayLiteral("H112340000\r");
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(ork2::crc16Modbus(reply));
    }
}
BENCHMARK(crcOfReply);

} // namespace

BENCHMARK_MAIN();
