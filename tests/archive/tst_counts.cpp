// SPDX-License-Identifier: GPL-3.0-or-later
#include "counts.h"
#include "samples.h"

using namespace ork2;
using namespace samples;

class tst_counts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layers_giveLowestMedianHighest();
    void evenNumber_medianIsTheLowerOne();
    void thresholds_areExclusive();
    void minuteWithoutLine_isMissing();
    void currentMinute_isMissingOnlyWhenItIsOver();
    void twoLinesInAMinute_countOnce();
    void codes_areNoHeights();
};

namespace {

Counts counted(std::vector<Sample> values, int minutes, int now = 1440)
{
    return countMinutes(
        history(std::move(values)), kStart, kStart + minutes * 60, kStart + now * 60);
}

} // namespace

void tst_counts::layers_giveLowestMedianHighest()
{
    const Counts counts = counted({height(0, 300, 900), height(1, 100), height(2, 200, 700)}, 3);
    QCOMPARE(counts.minutes, 3);
    QCOMPARE(counts.first.minutes, 3);
    QCOMPARE(*counts.first.lowest, 100);
    QCOMPARE(*counts.first.median, 200);
    QCOMPARE(*counts.first.highest, 300);
    QCOMPARE(counts.second.minutes, 2);
    QCOMPARE(*counts.second.lowest, 700);
    QCOMPARE(*counts.second.highest, 900);
}

void tst_counts::evenNumber_medianIsTheLowerOne()
{
    QCOMPARE(*counted({height(0, 300), height(1, 100)}, 2).first.median, 100);
    QVERIFY(!counted({}, 2).first.median);
}

void tst_counts::thresholds_areExclusive()
{
    const Counts counts = counted({height(0, 59), height(1, 60), height(2, 99), height(3, 100),
                                      height(4, 499), height(5, 500)},
        6);
    const std::array<qint64, 6> expected{1, 3, 4, 4, 4, 5};
    QCOMPARE(counts.below, expected);
}

void tst_counts::minuteWithoutLine_isMissing()
{
    const Counts counts = counted(
        {height(0, 100), height(2, 5000), height(5, 100, 5000, RecordChannel::Reserve)}, 10);
    QCOMPARE(counts.minutes, 10);
    QCOMPARE(counts.missing, 7);
    QCOMPARE(counts.noCloud, 1);
    QCOMPARE(counts.reserve, 1);
}

void tst_counts::currentMinute_isMissingOnlyWhenItIsOver()
{
    QCOMPARE(counted({height(0, 100)}, 60, 1).missing, 0);
    QCOMPARE(counted({height(0, 100)}, 60, 2).missing, 1);
    QCOMPARE(counted({height(0, 100), height(1, 100)}, 60, 1).minutes, 2);
}

void tst_counts::twoLinesInAMinute_countOnce()
{
    Sample later = height(0, 200);
    later.time += 30;
    const Counts counts = counted({height(0, 50), later}, 1);
    QCOMPARE(counts.minutes, 1);
    QCOMPARE(counts.first.minutes, 1);
    QCOMPARE(*counts.first.lowest, 200);
    QCOMPARE(counts.below[0], 0);
}

void tst_counts::codes_areNoHeights()
{
    Sample unreadable = height(3, 100);
    unreadable.first = LayerValue();
    const Counts counts =
        counted({height(0, 7777, 7777), height(1, 8888), height(2, 9999), unreadable}, 4);
    QCOMPARE(counts.first.minutes, 0);
    QCOMPARE(counts.codes, 3);
    QCOMPARE(counts.noCloud, 0);
    QCOMPARE(counts.missing, 0);
}

QTEST_GUILESS_MAIN(tst_counts)
#include "tst_counts.moc"
