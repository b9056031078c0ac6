// SPDX-License-Identifier: GPL-3.0-or-later
#include "options.h"

#include "scenariofile.h"

#include <QCommandLineParser>

#include <limits>

namespace ork2 {

namespace {

constexpr qint64 kMaxPeriodMs = 3'600'000;

// Reads the options from the parser one by one; keeps the first error.
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &parser)
        : m_parser(parser)
    { }

    [[nodiscard]] std::optional<qint64> number(const QString &name, qint64 lowest, qint64 highest)
    {
        if (!m_parser.isSet(name)) {
            return std::nullopt;
        }
        bool isNumber = false;
        const qint64 value = m_parser.value(name).toLongLong(&isNumber);
        if (isNumber && value >= lowest && value <= highest) {
            return value;
        }
        setError(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                     .arg(name)
                     .arg(lowest)
                     .arg(highest)
                     .arg(m_parser.value(name)));
        return std::nullopt;
    }

    [[nodiscard]] QString text(const QString &name, const QString &fallback = {})
    {
        if (!m_parser.isSet(name)) {
            return fallback;
        }
        if (m_parser.value(name).isEmpty()) {
            setError(QStringLiteral("--%1 must not be empty").arg(name));
        }
        return m_parser.value(name);
    }

    [[nodiscard]] Delivery delivery()
    {
        const QString name = QStringLiteral("delivery");
        if (!m_parser.isSet(name) || m_parser.value(name) == QLatin1String("whole")) {
            return Delivery::Whole;
        }
        if (m_parser.value(name) != QLatin1String("bytes")) {
            setError(QStringLiteral("--delivery takes \"whole\" or \"bytes\", not \"%1\"")
                         .arg(m_parser.value(name)));
        }
        return Delivery::Bytes;
    }

    void setError(const QString &text)
    {
        if (m_error.isEmpty()) {
            m_error = text;
        }
    }
    [[nodiscard]] QString error() const { return m_error; }

private:
    const QCommandLineParser &m_parser;
    QString m_error;
};

void describe(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Simulates a cloud-base height meter on a pseudo-terminal and prints \"ready PATH\" when "
        "it\n"
        "can be opened. While no program has it open, readings are lost, as on a real line."));
    parser.addOptions({
        {QStringLiteral("scenario"),
            QStringLiteral("Scenario: weather (default), errors, faults, or a scenario file."),
            QStringLiteral("NAME|FILE")},
        {QStringLiteral("replay"),
            QStringLiteral("Send the readings of a day file of the terminal, one per period."),
            QStringLiteral("DAYFILE")},
        {QStringLiteral("period"),
            QStringLiteral("Milliseconds between readings, default 1000. 0: as fast as possible; "
                           "the simulator waits for the reader and no reading is lost."),
            QStringLiteral("MS")},
        {QStringLiteral("delivery"),
            QStringLiteral("whole (default): each reading in one write; "
                           "bytes: byte by byte at 9600 baud."),
            QStringLiteral("whole|bytes")},
        {QStringLiteral("seed"), QStringLiteral("Seed of the random numbers; default 1."),
            QStringLiteral("N")},
        {QStringLiteral("count"),
            QStringLiteral("Exit after N readings, including corrupted ones, noise and \"bytes\"."),
            QStringLiteral("N")},
        {QStringLiteral("link"),
            QStringLiteral("Create a symbolic link PATH to the pseudo-terminal while it exists."),
            QStringLiteral("PATH")},
        QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")},
            QStringLiteral("Show this help.")),
    });
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(arguments)) {
        return {std::nullopt, false, parser.errorText()};
    }
    if (parser.isSet(QStringLiteral("help"))) {
        return {std::nullopt, true, parser.helpText() + u'\n' + scenarioFileHelp()};
    }

    OptionReader reader(parser);
    Options options;
    options.scenario = reader.text(QStringLiteral("scenario"), options.scenario);
    options.dayFile = reader.text(QStringLiteral("replay"));
    options.linkPath = reader.text(QStringLiteral("link"));
    options.delivery = reader.delivery();
    if (const auto period = reader.number(QStringLiteral("period"), 0, kMaxPeriodMs)) {
        options.period = std::chrono::milliseconds(*period);
    }
    if (const auto seed =
            reader.number(QStringLiteral("seed"), 0, std::numeric_limits<quint32>::max())) {
        options.seed = static_cast<quint32>(*seed);
    }
    if (const auto count =
            reader.number(QStringLiteral("count"), 1, std::numeric_limits<int>::max())) {
        options.count = static_cast<int>(*count);
    }
    if (parser.isSet(QStringLiteral("scenario")) && parser.isSet(QStringLiteral("replay"))) {
        reader.setError(QStringLiteral("--scenario and --replay exclude each other"));
    }
    if (!parser.positionalArguments().isEmpty()) {
        reader.setError(QStringLiteral("there is no use for the argument \"%1\"")
                            .arg(parser.positionalArguments().constFirst()));
    }

    if (!reader.error().isEmpty()) {
        return {std::nullopt, false, reader.error()};
    }
    return {options, false, {}};
}

} // namespace ork2
