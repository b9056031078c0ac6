// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfileparser.h"

#include "dayfileformat.h"

#include <algorithm>
#include <optional>

namespace ork2 {

namespace {

constexpr qsizetype kTimeLength = 8; // hh:mm:ss
constexpr char kTab = '\t';
const QByteArray kByteOrderMark = QByteArrayLiteral("\xEF\xBB\xBF");

const QByteArray &utf8UnitHeading()
{
    static const QByteArray text = kUnitHeading.toUtf8();
    return text;
}

const QByteArray &utf8TimeHeading()
{
    static const QByteArray text = kTimeHeading.toUtf8();
    return text;
}

const QByteArray &utf8Dashes()
{
    static const QByteArray text = kNoValueDashes.toUtf8();
    return text;
}

constexpr bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Returns -1 if the two characters are not digits.
constexpr int twoDigits(const char *text)
{
    return isDigit(text[0]) && isDigit(text[1]) ? (text[0] - '0') * 10 + (text[1] - '0') : -1;
}

// Returns -1 if the line does not begin with a time.
int secondOfDay(QByteArrayView line)
{
    if (line.size() < kTimeLength || line[2] != ':' || line[5] != ':') {
        return -1;
    }
    const int hour = twoDigits(line.data());
    const int minute = twoDigits(line.data() + 3);
    const int second = twoDigits(line.data() + 6);
    const bool valid =
        hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    return valid ? (hour * 60 + minute) * 60 + second : -1;
}

LayerValue layerValue(QByteArrayView field)
{
    if (field.size() != kHeightDigits) {
        return {};
    }
    if (field == utf8Dashes()) {
        return LayerValue::noCloud();
    }
    const int thousands = twoDigits(field.data());
    const int units = twoDigits(field.data() + 2);
    return thousands < 0 || units < 0 ? LayerValue() : LayerValue(thousands * 100 + units);
}

RecordChannel channelNamed(QByteArrayView name)
{
    static const QByteArray mainName = kMainChannelName.toUtf8();
    static const QByteArray reserveName = kReserveChannelName.toUtf8();
    if (name == mainName) {
        return RecordChannel::Main;
    }
    return name == reserveName ? RecordChannel::Reserve : RecordChannel::Unknown;
}

QByteArrayView withoutZeros(QByteArrayView line)
{
    while (!line.isEmpty() && line.front() == '\0') {
        line = line.sliced(1);
    }
    while (!line.isEmpty() && line.back() == '\0') {
        line.chop(1);
    }
    return line;
}

// Removes and returns the text before the next tab, or all of the text.
QByteArrayView takeField(QByteArrayView &rest)
{
    const qsizetype tab = rest.indexOf(kTab);
    const QByteArrayView field = tab < 0 ? rest : rest.first(tab);
    rest = tab < 0 ? QByteArrayView() : rest.sliced(tab + 1);
    return field;
}

std::optional<LineProblem> problemOf(const DayRecord &record, qsizetype separators, bool hasZeros)
{
    if (hasZeros) {
        return LineProblem::ZeroBytes;
    }
    if (separators != kRecordFields - 1) {
        return separators < kRecordFields - 1 ? LineProblem::MissingFields
                                              : LineProblem::ExtraFields;
    }
    if (record.first.isUnreadable() || record.second.isUnreadable()) {
        return LineProblem::BadHeight;
    }
    if (record.channel == RecordChannel::Unknown) {
        return LineProblem::UnknownChannel;
    }
    return std::nullopt;
}

} // namespace

DayFileParser::DayFileParser(DayFileReceiver &receiver, int unit)
    : m_receiver(receiver)
    , m_unit(unit)
{ }

void DayFileParser::parse(QByteArrayView piece)
{
    while (!piece.isEmpty()) {
        if (isLineEnd(piece.front())) {
            parseLineEnd(piece.front());
            piece = piece.sliced(1);
            continue;
        }
        startLine();
        const auto end = std::find_if(piece.begin(), piece.end(), isLineEnd);
        const QByteArrayView text = piece.first(end - piece.begin());
        piece = piece.sliced(text.size());
        if (!piece.isEmpty() && m_kept.isEmpty() && !m_tooLong) {
            parseLine(text); // without a copy
            m_ended = true;
        } else {
            keep(text);
        }
    }
}

void DayFileParser::finish()
{
    if (!m_kept.isEmpty() || m_tooLong) {
        endLine();
    }
}

void DayFileParser::parseLineEnd(char end)
{
    endLine();
    if (end == '\r') {
        ++m_returns;
    } else {
        m_returns = 0;
        m_ended = false;
    }
}

// Returns that are not followed by a line feed are one line end each.
void DayFileParser::startLine()
{
    if (m_returns > 0) {
        m_line += m_returns - 1;
        m_returns = 0;
        m_ended = false;
    }
}

void DayFileParser::endLine()
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    if (m_tooLong) {
        m_tooLong = false;
        m_receiver.problem(LineProblem::TooLong, ++m_line);
        return;
    }
    parseLine(m_kept);
    m_kept.clear();
}

void DayFileParser::keep(QByteArrayView text)
{
    if (m_kept.size() + text.size() > kMaxDayLineLength) {
        m_tooLong = true;
        m_kept.clear();
    } else if (!m_tooLong) {
        m_kept.append(text);
    }
}

void DayFileParser::parseLine(QByteArrayView line)
{
    ++m_line;
    if (line.size() > kMaxDayLineLength) {
        m_receiver.problem(LineProblem::TooLong, m_line);
        return;
    }
    if (m_line == 1 && line.startsWith(kByteOrderMark)) {
        line = line.sliced(kByteOrderMark.size());
    }
    if (line.isEmpty()) {
        return;
    }
    const QByteArrayView text = withoutZeros(line);
    const bool hasZeros = text.size() != line.size();
    if (text.startsWith(utf8UnitHeading())) {
        parseHeading(text.sliced(utf8UnitHeading().size()));
    } else if (!text.startsWith(utf8TimeHeading()) && !parseRecord(text, hasZeros)) {
        m_receiver.problem(hasZeros ? LineProblem::ZeroBytes : LineProblem::NoRecord, m_line);
    }
}

void DayFileParser::parseHeading(QByteArrayView number)
{
    if (m_unit != kAnyUnit && number.toByteArray().trimmed() != QByteArray::number(m_unit)) {
        m_receiver.problem(LineProblem::OtherUnit, m_line);
    }
}

bool DayFileParser::parseRecord(QByteArrayView line, bool hasZeros)
{
    DayRecord record;
    record.secondOfDay = secondOfDay(line);
    if (record.secondOfDay < 0 || line.size() == kTimeLength || line[kTimeLength] != kTab) {
        return false;
    }
    QByteArrayView rest = line.sliced(kTimeLength + 1);
    const qsizetype separators = 1 + std::count(rest.begin(), rest.end(), kTab);
    const QByteArrayView first = takeField(rest);
    const QByteArrayView second = takeField(rest);
    record.first = layerValue(first);
    record.second = layerValue(second);
    record.channel = channelNamed(takeField(rest));
    if (const auto problem = problemOf(record, separators, hasZeros)) {
        m_receiver.problem(*problem, m_line);
    }
    m_receiver.record(record, first, second, m_line);
    return true;
}

} // namespace ork2
