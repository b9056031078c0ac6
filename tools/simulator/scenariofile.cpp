// SPDX-License-Identifier: GPL-3.0-or-later
#include "scenariofile.h"

#include "readingframe.h"

#include <QList>

#include <algorithm>
#include <optional>

namespace ork2 {

namespace {

// The content of a line, or the error in it.
struct Line
{
    std::optional<ScriptStep> step;
    bool repeats = false;
    QString error;
};

Line makeError(const QString &error)
{
    return {.step = std::nullopt, .repeats = false, .error = error};
}

Line makeStep(Step step, int times = 1)
{
    return {.step = ScriptStep{std::move(step), times}, .repeats = false, .error = {}};
}

QString quoted(const QByteArray &word)
{
    return QStringLiteral("\"%1\"").arg(QString::fromUtf8(word));
}

// Accepts digits only: no sign, no spaces.
std::optional<int> wholeNumber(const QByteArray &word, int lowest, int highest)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (!isNumber || !std::all_of(word.begin(), word.end(), isDigit) || number < lowest
        || number > highest) {
        return std::nullopt;
    }
    return number;
}

Line readingLine(const QList<QByteArray> &words)
{
    if (words.size() < 4 || words.size() > 5) {
        return makeError(
            QStringLiteral("\"reading\" takes a channel, two heights and, if need be, xN"));
    }
    if (words[1].size() != 1 || !wholeNumber(words[1], 0, 9)) {
        return makeError(
            QStringLiteral("the channel must be one digit, not %1").arg(quoted(words[1])));
    }

    // Any digit is allowed, including those that are not channels.
    Reading reading{static_cast<Channel>(words[1].front()), 0, 0};
    for (auto [word, height] :
        {std::pair(words[2], &reading.firstLayer), std::pair(words[3], &reading.secondLayer)}) {
        const std::optional<int> number = wholeNumber(word, 0, kMaxHeight);
        if (!number) {
            return makeError(QStringLiteral("a height must be a whole number from 0 to %1, not %2")
                                 .arg(kMaxHeight)
                                 .arg(quoted(word)));
        }
        *height = *number;
    }

    std::optional<int> times = 1;
    if (words.size() == 5) {
        times = words[4].startsWith('x') ? wholeNumber(words[4].mid(1), 1, kMaxRepetitions)
                                         : std::nullopt;
        if (!times) {
            return makeError(QStringLiteral("the repetition must be x1 to x%1, not %2")
                                 .arg(kMaxRepetitions)
                                 .arg(quoted(words[4])));
        }
    }
    return makeStep(Transmission{readingFrame(reading)}, *times);
}

Line bytesLine(const QList<QByteArray> &words)
{
    QByteArray bytes;
    for (const QByteArray &word : words.mid(1)) {
        const QByteArray decoded = QByteArray::fromHex(word);
        // fromHex() ignores invalid characters; toHex() detects them.
        if (decoded.toHex() != word.toLower()) {
            return makeError(QStringLiteral("%1 is not made of bytes, two hexadecimal digits each")
                                 .arg(quoted(word)));
        }
        bytes += decoded;
    }
    if (bytes.isEmpty() || bytes.size() > kMaxScriptBytes) {
        return makeError(QStringLiteral("\"bytes\" takes 1 to %1 bytes").arg(kMaxScriptBytes));
    }
    return makeStep(Transmission{bytes});
}

Line pauseLine(const QList<QByteArray> &words)
{
    const auto longest = static_cast<int>(kMaxPause.count());
    const std::optional<int> number =
        words.size() == 2 ? wholeNumber(words[1], 0, longest) : std::nullopt;
    if (!number) {
        return makeError(QStringLiteral("%1 takes one whole number of milliseconds from 0 to %2")
                             .arg(quoted(words[0]))
                             .arg(longest));
    }
    const std::chrono::milliseconds duration(*number);
    return words[0] == "silence" ? makeStep(Silence{duration}) : makeStep(Unplugging{duration});
}

Line repeatLine(const QList<QByteArray> &words)
{
    if (words.size() > 1) {
        return makeError(QStringLiteral("\"repeat\" stands alone"));
    }
    return {.step = std::nullopt, .repeats = true, .error = {}};
}

Line parseLine(const QList<QByteArray> &words)
{
    const QByteArray &command = words.front();
    if (command == "reading") {
        return readingLine(words);
    }
    if (command == "bytes") {
        return bytesLine(words);
    }
    if (command == "silence" || command == "unplug") {
        return pauseLine(words);
    }
    if (command == "repeat") {
        return repeatLine(words);
    }
    return makeError(QStringLiteral("there is no command %1").arg(quoted(command)));
}

bool transmits(const Script &script)
{
    return std::any_of(script.steps.begin(), script.steps.end(),
        [](const ScriptStep &step) { return std::holds_alternative<Transmission>(step.step); });
}

// Adds the line to the script. Returns an error message, or an empty string on success.
QString addLine(Script &script, Line line)
{
    if (!line.error.isEmpty()) {
        return line.error;
    }
    if (script.repeats) {
        return QStringLiteral("nothing may follow \"repeat\"");
    }
    if (line.repeats && !transmits(script)) {
        return QStringLiteral("\"repeat\" needs a reading or bytes before it");
    }
    script.repeats = line.repeats;
    if (line.step) {
        script.steps.push_back(std::move(*line.step));
    }
    return {};
}

} // namespace

QString scenarioFileHelp()
{
    return QStringLiteral(
        "Scenario file, one step per line:\n"
        "  reading CHANNEL FIRST SECOND [xN]  a reading: channel digit, heights 0 to 9999, N "
        "times\n"
        "  bytes HEX...                       any bytes, instead of a reading\n"
        "  silence MS                         a pause, in addition to the period\n"
        "  unplug MS                          unplug the cable for MS milliseconds\n"
        "  repeat                             as the last line: repeat from the start, forever\n"
        "  # comment                          to the end of the line; empty lines are ignored\n"
        "Example:\n"
        "  reading 0 850 1500 x10\n"
        "  bytes 48 30 0D  # an incomplete reading\n"
        "  silence 6000\n"
        "  repeat\n");
}

ScriptResult parseScenarioFile(const QByteArray &text, const QString &fileName)
{
    ScriptResult result;
    int lineNumber = 0;
    for (const QByteArray &line : text.split('\n')) {
        ++lineNumber;
        const QByteArray content = line.split('#').constFirst().simplified();
        if (content.isEmpty()) {
            continue;
        }
        const QString error = addLine(result.script, parseLine(content.split(' ')));
        if (!error.isEmpty()) {
            return {{}, QStringLiteral("%1:%2: %3").arg(fileName).arg(lineNumber).arg(error)};
        }
    }
    if (result.script.steps.empty()) {
        result.error = QStringLiteral("%1: there is nothing to play").arg(fileName);
    }
    return result;
}

} // namespace ork2
