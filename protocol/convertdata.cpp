// SPDX-License-Identifier: GPL-3.0-or-later
#include "convertdata.h"

#include "frames.h"

#include <cmath>

namespace {

// Each byte is one character. Bytes beyond the end of the frame are omitted.
QString field(const QByteArray &frame, qsizetype offset, qsizetype length)
{
    return QString::fromLatin1(frame.mid(offset, length));
}

QString layerHeight(const QByteArray &frame, qsizetype offset)
{
    QString digits = field(frame, offset, ork2::kHeightDigits);
    if (digits == ork2::kClearSkyText || digits == ork2::kNoCloudText) {
        digits = ork2::kNoValueText.toString();
    }
    return digits;
}

int plainByte(const QByteArray &frame, qsizetype offset)
{
    return static_cast<quint8>(frame.at(offset));
}

int plainWord(const QByteArray &frame, qsizetype offset)
{
    return plainByte(frame, offset) * 0x100 + plainByte(frame, offset + 1);
}

// The two hexadecimal digits of the byte as a decimal number; 0 if a digit is greater than 9.
int decimalByte(const QByteArray &frame, qsizetype offset)
{
    return frame.mid(offset, 1).toHex().toInt();
}

double wholeAndTenths(const QByteArray &frame, qsizetype offset)
{
    return (decimalByte(frame, offset) * 10 + decimalByte(frame, offset + 1)) / 10.0;
}

} // namespace

convertData::convertData(QObject *parent)
    : QObject(parent)
{ }

void convertData::parseCloudData(QByteArray data)
{
    const QString channel = field(data, ork2::kChannelOffset, 1);
    const QString first = layerHeight(data, ork2::kFirstLayerOffset);
    const QString second = layerHeight(data, ork2::kSecondLayerOffset);
    Q_EMIT readyToShowClouds(first, second);
    Q_EMIT readyToShowCloudChanel(channel);
}

void convertData::parseWindData(QByteArray data)
{
    if (data.size() != ork2::kWindFrameLength) {
        return;
    }
    const int address = plainByte(data, ork2::kWindAddressOffset);
    const auto speed = [&data](qsizetype sensor) {
        return wholeAndTenths(data, ork2::kWindValuesOffset + sensor * ork2::kWindValuesPitch);
    };
    const auto direction = [&data](qsizetype sensor) {
        return static_cast<double>(plainWord(data,
            ork2::kWindValuesOffset + sensor * ork2::kWindValuesPitch + ork2::kWindDirectionShift));
    };
    const auto critical = [&data](qsizetype sensor) {
        return wholeAndTenths(data, ork2::kWindCriticalOffset + sensor * ork2::kWindCriticalPitch);
    };
    Q_EMIT readyToShowWindSpeed(address, speed(0), speed(1), speed(2));
    Q_EMIT readyToShowWindDirection(address, direction(0), direction(1), direction(2));
    Q_EMIT readyToShowWindCritical(address, critical(0), critical(1), critical(2));
}

void convertData::parseTempData(QByteArray data)
{
    if (data.size() != ork2::kTempFrameLength) {
        return;
    }
    // Computed from the fields instead of reinterpreting the bytes. Intentional: the protocol has
    // no special case for a zero exponent, so four zero bytes give 2^-127 and not 0.
    const int high = plainWord(data, ork2::kTempHighWordOffset);
    const int low = plainWord(data, ork2::kTempLowWordOffset);
    const int exponent = (high >> 7) & 0xFF;
    const int mantissa = ((high & 0xFF) << 16) | low | 0x800000;
    const double magnitude = std::ldexp(mantissa, exponent - 127 - 23);
    const bool negative = (high & 0x8000) != 0;
    Q_EMIT readyToShowTemp(
        plainByte(data, ork2::kTempAddressOffset), negative ? -magnitude : magnitude);
}
