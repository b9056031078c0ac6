// SPDX-License-Identifier: GPL-3.0-or-later
#include "eventjournal.h"
#include "samples.h"

#include <QTemporaryDir>

using namespace ork2;
using Kind = WatchEvent::Kind;

class tst_eventjournal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void events_surviveARestart();
    void damagedLine_isOmitted();
    void readOnlyPlace_isReported();
    void texts_nameTheEvent();
};

void tst_eventjournal::events_surviveARestart()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("new/journal.tsv"));
    QCOMPARE(EventJournal(path).append(17, {Kind::Below, samples::kStart, 200, 190}), QString());
    QCOMPARE(EventJournal(path).append(17, {Kind::Silence, samples::kStart + 60}), QString());
    const QList<JournalEntry> entries = EventJournal(path).last(10);
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[0].event.kind, Kind::Silence);
    QCOMPARE(entries[1].event.kind, Kind::Below);
    QCOMPARE(entries[1].event.time, samples::kStart);
    QCOMPARE(entries[1].event.threshold, 200);
    QCOMPARE(entries[1].event.height, 190);
    QCOMPARE(entries[1].unit, 17);
    QCOMPARE(EventJournal(path).last(1).size(), 1);
}

void tst_eventjournal::damagedLine_isOmitted()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("journal.tsv"));
    samples::write(path,
        QByteArray("2026-11-22T03:00:00+03:00\t17\tbelow\t200\t190\n"
                   "2026-11-22T03:0\n"
                   "2026-11-22T03:00:00+03:00\t17\tother\t0\t0\n")
            + QByteArray(10, '\0') + '\n');
    QCOMPARE(EventJournal(path).last(10).size(), 1);
}

void tst_eventjournal::readOnlyPlace_isReported()
{
    const QString error =
        EventJournal(QStringLiteral("/proc/none/journal")).append(17, {Kind::Silence, 0});
    QVERIFY(error.startsWith(QStringLiteral("Журнал событий не записан")));
}

void tst_eventjournal::texts_nameTheEvent()
{
    QCOMPARE(
        eventText({Kind::Below, 0, 200, 190}), QStringLiteral("Облака ниже 200 м: высота 190 м"));
    QCOMPARE(eventText({Kind::Above, 0, 200, 0}),
        QStringLiteral("Облака снова выше 200 м: облаков нет"));
}

QTEST_GUILESS_MAIN(tst_eventjournal)
#include "tst_eventjournal.moc"
