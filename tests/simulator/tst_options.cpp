// SPDX-License-Identifier: GPL-3.0-or-later
#include "options.h"

#include "scenariofile.h"

#include <QTest>

using namespace ork2;
using namespace std::chrono_literals;

namespace {

CommandLine parsed(const QString &arguments)
{
    return parseCommandLine(
        QStringList{QStringLiteral("simulator")} + arguments.split(u' ', Qt::SkipEmptyParts));
}

} // namespace

class tst_options : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_nothing_givesDefaults();
    void parse_allOptions_areAccepted();
    void parse_limits_areAccepted();
    void parse_help_describesOptionsAndScenarioFile();
    void parse_badOption_reportsError_data();
    void parse_badOption_reportsError();
    void parse_emptyText_isRefused();
};

void tst_options::parse_nothing_givesDefaults()
{
    const CommandLine commandLine = parsed({});
    QVERIFY(commandLine.options.has_value());
    QCOMPARE(commandLine.options->scenario, QStringLiteral("weather"));
    QCOMPARE(commandLine.options->dayFile, QString());
    QCOMPARE(commandLine.options->linkPath, QString());
    QCOMPARE(commandLine.options->period, 1000ms);
    QVERIFY(commandLine.options->delivery == Delivery::Whole);
    QCOMPARE(commandLine.options->seed, 1U);
    QVERIFY(!commandLine.options->count);
}

void tst_options::parse_allOptions_areAccepted()
{
    const CommandLine commandLine = parsed(QStringLiteral(
        "--scenario faults --period 20 --delivery bytes --seed 7 --count 3 --link /tmp/x"));
    QVERIFY2(commandLine.options.has_value(), qPrintable(commandLine.text));
    QCOMPARE(commandLine.options->scenario, QStringLiteral("faults"));
    QCOMPARE(commandLine.options->period, 20ms);
    QVERIFY(commandLine.options->delivery == Delivery::Bytes);
    QCOMPARE(commandLine.options->seed, 7U);
    QCOMPARE(commandLine.options->count.value(), 3);
    QCOMPARE(commandLine.options->linkPath, QStringLiteral("/tmp/x"));
    QCOMPARE(
        parsed(QStringLiteral("--replay day.txt")).options->dayFile, QStringLiteral("day.txt"));
    QVERIFY(parsed(QStringLiteral("--delivery whole")).options->delivery == Delivery::Whole);
}

void tst_options::parse_limits_areAccepted()
{
    const CommandLine lowest = parsed(QStringLiteral("--period 0 --seed 0 --count 1"));
    QVERIFY2(lowest.options.has_value(), qPrintable(lowest.text));
    const CommandLine highest =
        parsed(QStringLiteral("--period 3600000 --seed 4294967295 --count 2147483647"));
    QVERIFY2(highest.options.has_value(), qPrintable(highest.text));
    QCOMPARE(highest.options->seed, 4294967295U);
}

void tst_options::parse_help_describesOptionsAndScenarioFile()
{
    for (const char *option : {"--help", "-h"}) {
        const CommandLine commandLine = parsed(QString::fromLatin1(option));
        QVERIFY(!commandLine.options);
        QVERIFY(commandLine.helpRequested);
        for (const char *name :
            {"scenario", "replay", "period", "delivery", "seed", "count", "link", "help"}) {
            QVERIFY2(commandLine.text.contains(QStringLiteral("--") + QLatin1String(name)), name);
        }
        QVERIFY(commandLine.text.contains(scenarioFileHelp()));
    }
}

void tst_options::parse_badOption_reportsError_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *arguments, const char *text) {
        QTest::newRow(name) << QString::fromLatin1(arguments) << QString::fromLatin1(text);
    };
    row("unknown option", "--speed 3", "Unknown option 'speed'.");
    row("value missing", "--period", "Missing value after '--period'.");
    row("period not a number", "--period fast",
        "--period takes a whole number from 0 to 3600000, not \"fast\"");
    row("period negative", "--period=-1",
        "--period takes a whole number from 0 to 3600000, not \"-1\"");
    row("period too long", "--period 3600001",
        "--period takes a whole number from 0 to 3600000, not \"3600001\"");
    row("unknown delivery", "--delivery bits",
        R"(--delivery takes "whole" or "bytes", not "bits")");
    row("seed too large", "--seed 4294967296",
        "--seed takes a whole number from 0 to 4294967295, not \"4294967296\"");
    row("count of zero", "--count 0",
        "--count takes a whole number from 1 to 2147483647, not \"0\"");
    row("scenario and replay", "--scenario errors --replay day.txt",
        "--scenario and --replay exclude each other");
    row("unexpected argument", "weather", "there is no use for the argument \"weather\"");
}

void tst_options::parse_badOption_reportsError()
{
    QFETCH(QString, arguments);
    const CommandLine commandLine = parsed(arguments);
    QVERIFY(!commandLine.options);
    QVERIFY(!commandLine.helpRequested);
    QTEST(commandLine.text, "text");
}

void tst_options::parse_emptyText_isRefused()
{
    for (const QString &name :
        {QStringLiteral("scenario"), QStringLiteral("replay"), QStringLiteral("link")}) {
        const CommandLine commandLine =
            parseCommandLine({QStringLiteral("simulator"), QStringLiteral("--") + name, QString()});
        QVERIFY(!commandLine.options);
        QCOMPARE(commandLine.text, QStringLiteral("--%1 must not be empty").arg(name));
    }
}

QTEST_GUILESS_MAIN(tst_options)
#include "tst_options.moc"
