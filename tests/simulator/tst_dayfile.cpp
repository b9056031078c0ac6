// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfile.h"

#include <QTest>

using namespace ork2;

namespace {

const char *const kHeading =
    "Номер прибора: 17\r\nВремя:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\t\r\n";

} // namespace

class tst_dayfile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parse_completeFile_returnsAReadingPerRecord();
    void parse_fileWithoutHeading_isAccepted();
    void parse_lineEndingsOfTextMode_areAccepted();
    void parse_corruptedField_isSentUnchanged();
    void parse_badRecord_reportsFileAndLine_data();
    void parse_badRecord_reportsFileAndLine();
    void parse_noRecord_reportsFile();
};

void tst_dayfile::parse_completeFile_returnsAReadingPerRecord()
{
    const ScriptResult result = parseDayFile(QByteArray(kHeading)
            + "\r\n00:00:00\t0850\t1500\tОсновной"
              "\r\n00:01:00\t----\t----\tРезерв"
              "\r\n23:59:00\t7777\t7777\tОсновной",
        QStringLiteral("d"));
    QCOMPARE(result.error, QString());
    QVERIFY(!result.script.repeats);
    const std::vector<ScriptStep> &steps = result.script.steps;
    QCOMPARE(steps.size(), 3U);
    QVERIFY(steps[0].step == Step(Transmission{"H008501500\r"}));
    QVERIFY(steps[1].step == Step(Transmission{"H150005000\r"}));
    QVERIFY(steps[2].step == Step(Transmission{"H077777777\r"}));
}

void tst_dayfile::parse_fileWithoutHeading_isAccepted()
{
    const ScriptResult result =
        parseDayFile("\r\n00:00:00\t0850\t1500\tОсновной", QStringLiteral("d"));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.script.steps.size(), 1U);
}

void tst_dayfile::parse_lineEndingsOfTextMode_areAccepted()
{
    QByteArray text = QByteArray(kHeading) + "\r\n00:00:00\t0850\t1500\tРезерв\r\n";
    text.replace("\r\n", "\r\r\n");
    const ScriptResult result = parseDayFile(text, QStringLiteral("d"));
    QCOMPARE(result.error, QString());
    QVERIFY(result.script.steps.at(0).step == Step(Transmission{"H108501500\r"}));
}

void tst_dayfile::parse_corruptedField_isSentUnchanged()
{
    const ScriptResult result = parseDayFile("00:00:00\t08x0\tÿ500\tОсновной", QStringLiteral("d"));
    QCOMPARE(result.error, QString());
    QVERIFY(result.script.steps.at(0).step
        == Step(Transmission{"H008x0\xFF"
                             "500\r"}));
}

void tst_dayfile::parse_badRecord_reportsFileAndLine_data()
{
    QTest::addColumn<QByteArray>("record");

    QTest::newRow("field missing") << QByteArray("00:00:00\t0850\tОсновной");
    QTest::newRow("additional field") << QByteArray("00:00:00\t0850\t1500\tОсновной\t");
    QTest::newRow("invalid time") << QByteArray("24:00:00\t0850\t1500\tОсновной");
    QTest::newRow("first height too short") << QByteArray("00:00:00\t850\t1500\tОсновной");
    QTest::newRow("second height too long") << QByteArray("00:00:00\t0850\t15000\tОсновной");
    QTest::newRow("height with multi-byte character")
        << QByteArray("00:00:00\t0850\t15ж0\tОсновной");
    QTest::newRow("unknown channel") << QByteArray("00:00:00\t0850\t1500\t0");
    QTest::newRow("other text") << QByteArray("hello");
}

void tst_dayfile::parse_badRecord_reportsFileAndLine()
{
    QFETCH(QByteArray, record);
    const ScriptResult result =
        parseDayFile(kHeading + QByteArray("\r\n00:00:00\t0850\t1500\tОсновной\r\n") + record,
            QStringLiteral("day.txt"));
    QCOMPARE(
        result.error, QStringLiteral("day.txt:5: no record of time, two heights and channel name"));
}

void tst_dayfile::parse_noRecord_reportsFile()
{
    QCOMPARE(parseDayFile(kHeading, QStringLiteral("day.txt")).error,
        QStringLiteral("day.txt: there is no record to play"));
}

QTEST_GUILESS_MAIN(tst_dayfile)
#include "tst_dayfile.moc"
