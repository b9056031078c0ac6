// SPDX-License-Identifier: GPL-3.0-or-later
#include "scenariofile.h"

#include <QTest>

using namespace ork2;
using namespace std::chrono_literals;

class tst_scenariofile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_everyCommand_returnsItsStep();
    void parse_windowsLineEndings_areAccepted();
    void parse_largestAllowedValues_areAccepted();
    void parse_exampleOfHelp_isAccepted();
    void parse_badLine_reportsFileLineAndReason_data();
    void parse_badLine_reportsFileLineAndReason();
    void parse_nothingToPlay_reportsFile();
};

void tst_scenariofile::parse_everyCommand_returnsItsStep()
{
    const ScriptResult result = parseScenarioFile("# a day at sea\n"
                                                  "reading 0 850 1500\n"
                                                  "\n"
                                                  "  reading\t1 7777  9999 x3   # no flash\n"
                                                  "bytes 48 300d fF\n"
                                                  "silence 6000\n"
                                                  "unplug 250\n"
                                                  "repeat\n",
        QStringLiteral("f"));
    QCOMPARE(result.error, QString());
    QVERIFY(result.script.repeats);
    const std::vector<ScriptStep> &steps = result.script.steps;
    QCOMPARE(steps.size(), 5U);
    QVERIFY(steps[0].step == Step(Transmission{"H008501500\r"}));
    QCOMPARE(steps[0].times, 1);
    QVERIFY(steps[1].step == Step(Transmission{"H177779999\r"}));
    QCOMPARE(steps[1].times, 3);
    QVERIFY(steps[2].step == Step(Transmission{"H0\r\xFF"}));
    QVERIFY(steps[3].step == Step(Silence{6000ms}));
    QVERIFY(steps[4].step == Step(Unplugging{250ms}));
}

void tst_scenariofile::parse_windowsLineEndings_areAccepted()
{
    const ScriptResult result =
        parseScenarioFile("reading 0 1 2\r\n\r\nsilence 5\r\n", QStringLiteral("f"));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.script.steps.size(), 2U);
    QVERIFY(!result.script.repeats);
}

void tst_scenariofile::parse_largestAllowedValues_areAccepted()
{
    const QByteArray text =
        "reading 9 9999 0 x1000000\nsilence 86400000\nbytes " + QByteArray(2048, 'a') + '\n';
    QCOMPARE(parseScenarioFile(text, QStringLiteral("f")).error, QString());
}

void tst_scenariofile::parse_exampleOfHelp_isAccepted()
{
    const QString help = scenarioFileHelp();
    const QString heading = QStringLiteral("Example:\n");
    QVERIFY(help.contains(heading));
    const QString example = help.mid(help.indexOf(heading) + heading.size());
    const ScriptResult result = parseScenarioFile(example.toUtf8(), QStringLiteral("f"));
    QCOMPARE(result.error, QString());
    QVERIFY(result.script.repeats);
}

void tst_scenariofile::parse_badLine_reportsFileLineAndReason_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const QByteArray &text, const char *error) {
        QTest::newRow(name) << text << QString::fromLatin1(error);
    };
    const char *shape = "s.txt:1: \"reading\" takes a channel, two heights and, if need be, xN";
    row("unknown command", "\n#\nread 0 1 2", "s.txt:3: there is no command \"read\"");
    row("command in capitals", "REPEAT", "s.txt:1: there is no command \"REPEAT\"");
    row("reading without second height", "reading 0 1", shape);
    row("reading with an additional word", "reading 0 1 2 x3 4", shape);
    row("channel of two digits", "reading 10 1 2",
        "s.txt:1: the channel must be one digit, not \"10\"");
    row("channel not a digit", "reading a 1 2",
        "s.txt:1: the channel must be one digit, not \"a\"");
    row("first height too large", "reading 0 10000 2",
        "s.txt:1: a height must be a whole number from 0 to 9999, not \"10000\"");
    row("second height negative", "reading 0 1 -2",
        "s.txt:1: a height must be a whole number from 0 to 9999, not \"-2\"");
    row("height with a sign", "reading 0 +1 2",
        "s.txt:1: a height must be a whole number from 0 to 9999, not \"+1\"");
    row("repetition without x", "reading 0 1 2 3",
        "s.txt:1: the repetition must be x1 to x1000000, not \"3\"");
    row("zero repetitions", "reading 0 1 2 x0",
        "s.txt:1: the repetition must be x1 to x1000000, not \"x0\"");
    row("too many repetitions", "reading 0 1 2 x1000001",
        "s.txt:1: the repetition must be x1 to x1000000, not \"x1000001\"");
    row("no bytes", "bytes # none", "s.txt:1: \"bytes\" takes 1 to 1024 bytes");
    row("too many bytes", "bytes " + QByteArray(2050, '0'),
        "s.txt:1: \"bytes\" takes 1 to 1024 bytes");
    row("half a byte", "bytes 48 3",
        "s.txt:1: \"3\" is not made of bytes, two hexadecimal digits each");
    row("invalid hexadecimal digit", "bytes 4G",
        "s.txt:1: \"4G\" is not made of bytes, two hexadecimal digits each");
    row("silence without a duration", "silence",
        "s.txt:1: \"silence\" takes one whole number of milliseconds from 0 to 86400000");
    row("silence too long", "silence 86400001",
        "s.txt:1: \"silence\" takes one whole number of milliseconds from 0 to 86400000");
    row("unplugging with two durations", "unplug 1 2",
        "s.txt:1: \"unplug\" takes one whole number of milliseconds from 0 to 86400000");
    row("unplugging with a unit", "unplug 1s",
        "s.txt:1: \"unplug\" takes one whole number of milliseconds from 0 to 86400000");
    row("repeat with a number", "reading 0 1 2\nrepeat 3", "s.txt:2: \"repeat\" stands alone");
    row("nothing to repeat", "silence 0\nrepeat",
        "s.txt:2: \"repeat\" needs a reading or bytes before it");
    row("step after repeat", "reading 0 1 2\nrepeat\n\nsilence 1",
        "s.txt:4: nothing may follow \"repeat\"");
    row("second repeat", "reading 0 1 2\nrepeat\nrepeat", "s.txt:3: nothing may follow \"repeat\"");
}

void tst_scenariofile::parse_badLine_reportsFileLineAndReason()
{
    QFETCH(QByteArray, text);
    const ScriptResult result = parseScenarioFile(text, QStringLiteral("s.txt"));
    QTEST(result.error, "error");
    QVERIFY(result.script.steps.empty());
}

void tst_scenariofile::parse_nothingToPlay_reportsFile()
{
    QCOMPARE(parseScenarioFile("# later\n\n", QStringLiteral("s.txt")).error,
        QStringLiteral("s.txt: there is nothing to play"));
}

QTEST_GUILESS_MAIN(tst_scenariofile)
#include "tst_scenariofile.moc"
