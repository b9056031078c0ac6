// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <optional>

// Layout of the frames of the serial line: 9600 baud, 8 data bits, no parity, 1 stop bit.
// Offsets and lengths are in bytes, heights in metres.
namespace ork2 {

// Reading, instrument to terminal: 'H', channel digit, two heights of four ASCII decimal digits
// (most significant first), carriage return. It has no checksum.
inline constexpr qsizetype kFrameLength = 11;
inline constexpr char kFrameStart = 'H';
inline constexpr char kCarriageReturn = '\r';
inline constexpr qsizetype kChannelOffset = 1;
inline constexpr qsizetype kFirstLayerOffset = 2;
inline constexpr qsizetype kSecondLayerOffset = 6;
inline constexpr qsizetype kHeightDigits = 4;
enum class Channel : char { Main = '0', Reserve = '1' }; // the digit on the line

// Returns std::nullopt if the text is not exactly one of the two digits.
[[nodiscard]] inline std::optional<Channel> channelOf(QStringView text)
{
    for (const Channel channel : {Channel::Main, Channel::Reserve}) {
        if (text.size() == 1 && text.front() == QLatin1Char(static_cast<char>(channel))) {
            return channel;
        }
    }
    return std::nullopt;
}

// Texts of a height field that mean "no cloud"; both are converted to 5000.
inline constexpr QStringView kClearSkyText = u"0000";
inline constexpr QStringView kNoCloudText = u"3000";
inline constexpr QStringView kNoValueText = u"5000"; // no cloud, or the instrument lost
inline constexpr int kNoValueHeight = 5000;
// Codes sent in both height fields when the instrument has no measurement.
inline constexpr int kNoFlashCode = 7777;   // the lamp does not flash
inline constexpr int kNotReadyCode = 8888;  // data not ready
inline constexpr int kDataErrorCode = 9999; // data error

// Request, terminal to instrument: ':', 0, 'A', heater flag, 0, CRC-16 low byte, high byte, CR.
inline constexpr char kRequestStart = ':';
inline constexpr char kRequestCommand = 'A';
inline constexpr int kRequestCrcInput = 5; // bytes before the CRC, which it covers

// Wind frame: for each of three sensors a speed (integer part and tenths, one BCD byte each)
// followed by a direction (word, high byte first), then three critical values encoded as the
// speeds.
inline constexpr qsizetype kWindFrameLength = 24;
inline constexpr qsizetype kWindAddressOffset = 1;
inline constexpr qsizetype kWindValuesOffset = 3;
inline constexpr qsizetype kWindValuesPitch = 4;
inline constexpr qsizetype kWindDirectionShift = 2;
inline constexpr qsizetype kWindCriticalOffset = 15;
inline constexpr qsizetype kWindCriticalPitch = 2;

// Temperature frame: an IEEE 754 single in degrees Celsius, low word before high word.
inline constexpr qsizetype kTempFrameLength = 9;
inline constexpr qsizetype kTempAddressOffset = 0;
inline constexpr qsizetype kTempLowWordOffset = 3;
inline constexpr qsizetype kTempHighWordOffset = 5;

} // namespace ork2
