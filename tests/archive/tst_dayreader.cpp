// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayreader.h"
#include "samples.h"

#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace ork2;

namespace {

QStringList problems(const Day &day)
{
    QStringList texts;
    for (const DayProblem &problem : day.problems) {
        texts += QStringLiteral("%1: %2").arg(problem.line).arg(problem.text);
    }
    return texts;
}

Day parsed(const QByteArray &text)
{
    return parseDay(text, samples::kDate, 17, samples::moscow());
}

} // namespace

class tst_dayreader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clockSetBack_linesAreSortedAndListed();
    void manyProblems_areCounted();
    void tooManyLines_areCounted();
    void missingFile_isAProblem();
    void fileWithoutRights_isAProblem();
    void pipe_isNotOpened();
    void largeFile_isReadInPieces();
    void cancelled_readsNothing();
};

void tst_dayreader::clockSetBack_linesAreSortedAndListed()
{
    const Day day = parsed("10:00:00\t0001\t----\tОсновной\n"
                           "10:00:00\t0002\t----\tОсновной\n"
                           "09:30:00\t0003\t----\tОсновной\n"
                           "09:31:00\t0004\t----\tОсновной\n");
    QCOMPARE(day.samples.size(), 4U);
    QList<int> heights;
    for (const Sample &sample : day.samples) {
        heights.append(sample.first.number());
    }
    QCOMPARE(heights, QList<int>({3, 4, 1, 2}));
    QCOMPARE(problems(day),
        QStringList(
            {QStringLiteral("2: время повторяется"), QStringLiteral("3: время идёт назад")}));
    QCOMPARE(day.problemCount, 2);
}

void tst_dayreader::manyProblems_areCounted()
{
    const Day day = parsed(QByteArray("x\n").repeated(5000));
    QCOMPARE(day.problemCount, 5000);
    QCOMPARE(day.problems.size(), std::size_t(kMaxListedProblems));
}

void tst_dayreader::tooManyLines_areCounted()
{
    QByteArray text;
    for (std::size_t i = 0; i < kMaxDaySamples + 5; ++i) {
        text += "10:00:00\t0001\t----\tОсновной\n";
    }
    const Day day = parsed(text);
    QCOMPARE(day.samples.size(), kMaxDaySamples);
    QCOMPARE(day.problemCount, qint64(kMaxDaySamples) - 1 + 5);
}

void tst_dayreader::missingFile_isAProblem()
{
    const DayPointer day =
        readDay(QStringLiteral("/nowhere/x.txt"), samples::kDate, 17, samples::moscow());
    QCOMPARE(problems(*day), QStringList(QStringLiteral("0: файл не открывается")));
    QCOMPARE(day->size, -1);
}

void tst_dayreader::fileWithoutRights_isAProblem()
{
    const QTemporaryDir folder;
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions::fromInt(0x7755)));
    const QString path = folder.filePath(QStringLiteral("day.txt"));
    samples::write(path, "10:00:00\t0001\t----\tОсновной\n");
    QVERIFY(QFile::setPermissions(path, {}));
    const samples::OtherUser user;
    const DayPointer day = readDay(path, samples::kDate, 17, samples::moscow());
    QCOMPARE(problems(*day), QStringList(QStringLiteral("0: файл не открывается")));
    QVERIFY(!day->isRead());
}

void tst_dayreader::pipe_isNotOpened()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QCOMPARE(readDay(path, samples::kDate, 17, samples::moscow())->problemCount, 1);
#endif
}

void tst_dayreader::largeFile_isReadInPieces()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("day.txt"));
    QByteArray text;
    for (int minute = 0; minute < 1440; ++minute) {
        text += QByteArray("\r\n") + QTime(0, 0).addSecs(minute * 60).toString().toLatin1()
            + "\t0850\t1500\tОсновной" + QByteArray(500, '\0');
    }
    samples::write(path, text);
    const DayPointer day = readDay(path, samples::kDate, 17, samples::moscow());
    QCOMPARE(day->samples.size(), 1440U);
    QCOMPARE(day->size, text.size());
}

void tst_dayreader::cancelled_readsNothing()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("day.txt"));
    samples::write(path, "10:00:00\t0001\t----\tОсновной\n");
    const std::atomic<bool> cancel(true);
    QVERIFY(readDay(path, samples::kDate, 17, samples::moscow(), &cancel)->samples.empty());
}

QTEST_GUILESS_MAIN(tst_dayreader)
#include "tst_dayreader.moc"
