// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline.h"

#include <QTest>

using namespace ork2;

namespace {

CommandLine parsed(const QString &arguments)
{
    return parseCommandLine(
        QStringList{QStringLiteral("ork2-archive")} + arguments.split(u' ', Qt::SkipEmptyParts));
}

} // namespace

class tst_commandline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noArguments_showTheWindow();
    void export_takesAllOptions();
    void wrongArguments_areRefused_data();
    void wrongArguments_areRefused();
};

void tst_commandline::noArguments_showTheWindow()
{
    const CommandLine line = parsed({});
    QCOMPARE(line.error, QString());
    QVERIFY(line.exportFile.isEmpty() && line.folder.isEmpty() && !line.help);
    QVERIFY(parsed(QStringLiteral("--help")).help);
}

void tst_commandline::export_takesAllOptions()
{
    const CommandLine line =
        parsed(QStringLiteral("--export a.csv --from 2026-11-01 --to 2026-11-22 --unit 17 folder"));
    QCOMPARE(line.error, QString());
    QCOMPARE(line.exportFile, QStringLiteral("a.csv"));
    QCOMPARE(line.from, QDate(2026, 11, 1));
    QCOMPARE(line.to, QDate(2026, 11, 22));
    QCOMPARE(*line.unit, 17);
    QCOMPARE(line.folder, QStringLiteral("folder"));
}

void tst_commandline::wrongArguments_areRefused_data()
{
    QTest::addColumn<QString>("arguments");

    for (const char *arguments : {"--unknown folder", "--export a.csv", "--export a.txt folder",
             "--export= folder", "--from 22.11.2026 folder", "--from 2026-02-30 folder",
             "--to 2026-1-1 folder", "--from 2026-11-02 --to 2026-11-01 folder", "--unit x folder",
             "--unit -3 folder", "one two", "folder --export"}) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
    }
}

void tst_commandline::wrongArguments_areRefused()
{
    QFETCH(QString, arguments);
    QVERIFY(!parsed(arguments).error.isEmpty());
}

QTEST_GUILESS_MAIN(tst_commandline)
#include "tst_commandline.moc"
