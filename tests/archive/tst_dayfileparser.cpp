// SPDX-License-Identifier: GPL-3.0-or-later
// Parses each dayfiles/<name>.txt and compares what is reported with <name>.expected.
#include "dayfileparser.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTime>

#include <array>

using namespace ork2;

namespace {

constexpr int kUnit = 17;

QByteArray textOf(LayerValue value)
{
    if (value.isUnreadable()) {
        return "unreadable";
    }
    if (value.isNoCloud()) {
        return "no cloud";
    }
    return QByteArray(value.isCode() ? "code " : "") + QByteArray::number(value.number());
}

class Report : public DayFileReceiver
{
public:
    void record(const DayRecord &record, QByteArrayView, QByteArrayView, qint64 line) override
    {
        static constexpr std::array<const char *, 3> channels{"main", "reserve", "unknown"};
        text += QByteArray::number(line) + ": "
            + QTime(0, 0).addSecs(record.secondOfDay).toString(u"hh:mm:ss").toLatin1() + ", "
            + textOf(record.first) + ", " + textOf(record.second) + ", "
            + channels.at(static_cast<std::size_t>(record.channel)) + '\n';
    }

    void problem(LineProblem problem, qint64 line) override
    {
        static constexpr std::array<const char *, 8> names{"no record", "too long", "zero bytes",
            "missing fields", "extra fields", "bad height", "unknown channel", "other unit"};
        text += QByteArray::number(line)
            + ": problem: " + names.at(static_cast<std::size_t>(problem)) + '\n';
    }

    QByteArray text;
};

QByteArray report(const QByteArray &text, qsizetype pieceLength)
{
    Report report;
    DayFileParser parser(report, kUnit);
    for (qsizetype at = 0; at < text.size(); at += pieceLength) {
        parser.parse(text.mid(at, pieceLength));
    }
    parser.finish();
    return report.text;
}

QByteArray contents(const QString &name)
{
    QFile file(QStringLiteral(DAY_FILES "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

} // namespace

class tst_dayfileparser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void file_isReportedAsExpected_data();
    void file_isReportedAsExpected();
    void endlessLine_needsNoMemory();
    void heading_ofAnyUnit_isAcceptedWithoutUnit();
};

void tst_dayfileparser::file_isReportedAsExpected_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    const QStringList names =
        QDir(QStringLiteral(DAY_FILES)).entryList({QStringLiteral("*.txt")}, QDir::Files);
    QVERIFY(names.size() > 10);
    for (const QString &name : names) {
        const QString pair = QString(name).chopped(4) + QStringLiteral(".expected");
        QTest::newRow(qPrintable(name)) << contents(name) << contents(pair);
    }
}

void tst_dayfileparser::file_isReportedAsExpected()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    for (const qsizetype pieceLength : {1, 2, 7, 100, 100000}) {
        QCOMPARE(report(text, pieceLength), expected);
    }
}

void tst_dayfileparser::endlessLine_needsNoMemory()
{
    Report report;
    DayFileParser parser(report, kUnit);
    const QByteArray zeros(1 << 20, '\0');
    for (int i = 0; i < 100; ++i) {
        parser.parse(zeros);
    }
    parser.parse("\n00:00:00\t0850\t1500\tОсновной");
    parser.finish();
    QCOMPARE(report.text, QByteArray("1: problem: too long\n2: 00:00:00, 850, 1500, main\n"));
}

void tst_dayfileparser::heading_ofAnyUnit_isAcceptedWithoutUnit()
{
    Report report;
    DayFileParser parser(report);
    parser.parse("Номер прибора: 18\r\n");
    parser.finish();
    QCOMPARE(report.text, QByteArray());
}

QTEST_GUILESS_MAIN(tst_dayfileparser)
#include "tst_dayfileparser.moc"
