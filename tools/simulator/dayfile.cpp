// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfile.h"

#include "dayfileformat.h"
#include "frames.h"
#include "readingframe.h"

#include <QStringList>
#include <QTime>

#include <algorithm>
#include <optional>

namespace ork2 {

namespace {

// Returns the height field to send. A corrupted reading may have left any characters in the file,
// one for each byte; they are sent unchanged.
std::optional<QByteArray> lineField(const QString &height)
{
    if (height == kNoValueDashes) {
        return heightField(kNoValueHeight);
    }
    const auto isOneByte = [](QChar c) { return c.unicode() <= 0xFF; };
    if (height.size() != kHeightDigits || !std::all_of(height.begin(), height.end(), isOneByte)) {
        return std::nullopt;
    }
    return height.toLatin1();
}

std::optional<Channel> namedChannel(const QString &name)
{
    if (name == kMainChannelName) {
        return Channel::Main;
    }
    if (name == kReserveChannelName) {
        return Channel::Reserve;
    }
    return std::nullopt;
}

bool isHeading(const QString &line)
{
    return line.startsWith(kUnitHeading) || line.startsWith(kTimeHeading);
}

// Returns std::nullopt if the line is not a record.
std::optional<Step> recordStep(const QString &line)
{
    const QStringList fields = line.split(kFieldSeparator);
    if (fields.size() != kRecordFields
        || !QTime::fromString(fields[0], kTimeFormat.toString()).isValid()) {
        return std::nullopt;
    }
    const auto first = lineField(fields[1]);
    const auto second = lineField(fields[2]);
    const auto channel = namedChannel(fields[3]);
    if (!first || !second || !channel) {
        return std::nullopt;
    }
    return Transmission{readingFrame(*channel, *first, *second)};
}

} // namespace

ScriptResult parseDayFile(const QByteArray &text, const QString &fileName)
{
    ScriptResult result;
    int lineNumber = 0;
    for (const QByteArray &bytes : text.split('\n')) {
        ++lineNumber;
        QString line = QString::fromUtf8(bytes);
        while (line.endsWith(u'\r')) {
            line.chop(1);
        }
        if (line.isEmpty() || isHeading(line)) {
            continue;
        }
        std::optional<Step> step = recordStep(line);
        if (!step) {
            result.error = QStringLiteral("%1:%2: no record of time, two heights and channel name")
                               .arg(fileName)
                               .arg(lineNumber);
            return result;
        }
        result.script.steps.push_back({std::move(*step), 1});
    }
    if (result.script.steps.empty()) {
        result.error = QStringLiteral("%1: there is no record to play").arg(fileName);
    }
    return result;
}

} // namespace ork2
