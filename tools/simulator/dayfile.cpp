// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfile.h"

#include "dayfileparser.h"
#include "readingframe.h"

#include <algorithm>
#include <optional>

namespace ork2 {

namespace {

// Returns the height field to send. A corrupted reading may have left any characters in the file,
// one for each byte; they are sent unchanged.
std::optional<QByteArray> lineField(LayerValue value, QByteArrayView field)
{
    if (value.isNoCloud()) {
        return heightField(kNoValueHeight);
    }
    const QString text = QString::fromUtf8(field);
    const auto isOneByte = [](QChar c) { return c.unicode() <= 0xFF; };
    if (text.size() != kHeightDigits || !std::all_of(text.begin(), text.end(), isOneByte)) {
        return std::nullopt;
    }
    return text.toLatin1();
}

// Collects the readings up to the first line that cannot be sent.
class ReadingCollector : public DayFileReceiver
{
public:
    void record(const DayRecord &record, QByteArrayView firstField, QByteArrayView secondField,
        qint64 line) override
    {
        if (badLine > 0) {
            return;
        }
        const auto first = lineField(record.first, firstField);
        const auto second = lineField(record.second, secondField);
        if (!first || !second || record.channel == RecordChannel::Unknown) {
            badLine = line;
            return;
        }
        const Channel channel =
            record.channel == RecordChannel::Main ? Channel::Main : Channel::Reserve;
        steps.push_back({Transmission{readingFrame(channel, *first, *second)}, 1});
    }

    void problem(LineProblem problem, qint64 line) override
    {
        if (badLine == 0 && problem != LineProblem::BadHeight) {
            badLine = line;
        }
    }

    std::vector<ScriptStep> steps;
    qint64 badLine = 0; // 0: none
};

} // namespace

ScriptResult parseDayFile(const QByteArray &text, const QString &fileName)
{
    ReadingCollector collector;
    DayFileParser parser(collector);
    parser.parse(text);
    parser.finish();
    ScriptResult result;
    if (collector.badLine > 0) {
        result.error = QStringLiteral("%1:%2: no record of time, two heights and channel name")
                           .arg(fileName)
                           .arg(collector.badLine);
    } else if (collector.steps.empty()) {
        result.error = QStringLiteral("%1: there is no record to play").arg(fileName);
    }
    result.script.steps = std::move(collector.steps);
    return result;
}

} // namespace ork2
