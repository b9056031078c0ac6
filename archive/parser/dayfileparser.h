// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "frames.h"

#include <QByteArray>
#include <QByteArrayView>

namespace ork2 {

// One height of a day file: a height in metres, no cloud, a code of the instrument, or unreadable.
class LayerValue
{
public:
    constexpr LayerValue() = default; // unreadable
    // 0 to 9999, as the digits of the field; 0, 3000 and 5000 mean "no cloud".
    explicit constexpr LayerValue(int digits)
        : m_value(
            digits == 0 || digits == kNoCloudHeight ? quint16(kNoValueHeight) : quint16(digits))
    { }

    [[nodiscard]] static constexpr LayerValue noCloud() { return LayerValue(kNoValueHeight); }
    [[nodiscard]] constexpr bool isUnreadable() const { return m_value == kUnreadable; }
    [[nodiscard]] constexpr bool isNoCloud() const { return m_value == kNoValueHeight; }
    [[nodiscard]] constexpr bool isCode() const
    {
        return m_value == kNoFlashCode || m_value == kNotReadyCode || m_value == kDataErrorCode;
    }
    [[nodiscard]] constexpr bool isHeight() const
    {
        return !isUnreadable() && !isNoCloud() && !isCode();
    }
    // The height in metres or the code; only valid for these.
    [[nodiscard]] constexpr int number() const { return m_value; }

    constexpr bool operator==(const LayerValue &) const = default;

private:
    static constexpr int kNoCloudHeight = 3000; // kNoCloudText as a number
    static constexpr quint16 kUnreadable = 0xFFFF;

    quint16 m_value = kUnreadable;
};

enum class RecordChannel : quint8 { Main, Reserve, Unknown };

// A line of a day file that begins with a valid time.
struct DayRecord
{
    int secondOfDay = 0; // 0 to 86399, local time
    LayerValue first;
    LayerValue second;
    RecordChannel channel = RecordChannel::Unknown;
};

// Why a line cannot be read completely. With all but NoRecord and TooLong, the readable fields of
// the line are still reported as a record.
enum class LineProblem : quint8 {
    NoRecord,      // neither a heading nor a record
    TooLong,       // longer than kMaxDayLineLength
    ZeroBytes,     // as left by a power failure
    MissingFields, // torn
    ExtraFields,
    BadHeight, // not four digits
    UnknownChannel,
    OtherUnit, // the heading names another instrument; never reported with a record
};

inline constexpr qsizetype kMaxDayLineLength = 4096; // bytes

// Receives the contents of a day file in the order of its lines.
class DayFileReceiver
{
public:
    DayFileReceiver() = default;
    DayFileReceiver(const DayFileReceiver &) = delete;
    DayFileReceiver &operator=(const DayFileReceiver &) = delete;
    virtual ~DayFileReceiver() = default;

    // The fields are the bytes of the two heights, valid during the call only.
    virtual void record(const DayRecord &record, QByteArrayView firstField,
        QByteArrayView secondField, qint64 line) = 0;
    // Called before record() for the same line, at most once for each line. Lines count from 1.
    virtual void problem(LineProblem problem, qint64 line) = 0;
};

// Parses a day file in pieces of any size: UTF-8 with or without a byte order mark, lines that end
// with LF, CR LF, several CR and LF, or CR. Headings are optional and may occur anywhere. Memory is
// bounded by the longest accepted line. No thread affinity.
class DayFileParser
{
public:
    static constexpr int kAnyUnit = -1;

    // A heading with a different number than unit is reported as a problem.
    explicit DayFileParser(DayFileReceiver &receiver, int unit = kAnyUnit);

    void parse(QByteArrayView piece);
    void finish(); // parses the last line, which has no line break

private:
    void parseLineEnd(char end);
    void startLine();
    void endLine();
    void keep(QByteArrayView text);
    void parseLine(QByteArrayView line);
    void parseHeading(QByteArrayView number);
    [[nodiscard]] bool parseRecord(QByteArrayView line, bool hasZeros);

    DayFileReceiver &m_receiver;
    QByteArray m_kept; // the beginning of an unfinished line
    qint64 m_line = 0; // number of the last line that was parsed
    int m_unit;
    int m_returns = 0;      // since the last line that was parsed
    bool m_ended = false;   // only the rest of the line end may follow
    bool m_tooLong = false; // the unfinished line has been discarded
};

} // namespace ork2
