// SPDX-License-Identifier: GPL-3.0-or-later
#include "localday.h"
#include "samples.h"

using namespace ork2;

namespace {

constexpr int at(int hour, int minute)
{
    return (hour * 60 + minute) * 60;
}

} // namespace

class tst_localday : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordinaryDay_hasOneOffset();
    void endOfSummerTime_secondHourFollowsTheFirst();
    void endOfSummerTime_clockSetBack_isNotTheSecondHour();
    void startOfSummerTime_skippedHour_isConverted();
};

void tst_localday::ordinaryDay_hasOneOffset()
{
    LocalDay day(samples::kDate, samples::moscow());
    QCOMPARE(day.start(), samples::kStart - 3 * 3600);
    QCOMPARE(day.toUtc(0), day.start());
    QCOMPARE(day.toUtc(at(23, 59)), day.start() + at(23, 59));
    QCOMPARE(day.toUtc(at(1, 0)), day.start() + at(1, 0));
}

void tst_localday::endOfSummerTime_secondHourFollowsTheFirst()
{
    LocalDay day(QDate(2026, 10, 25), QTimeZone("Europe/Berlin"));
    const qint64 start = day.start();
    QCOMPARE(day.toUtc(at(1, 59)), start + at(1, 59));
    QCOMPARE(day.toUtc(at(2, 0)), start + at(2, 0));
    QCOMPARE(day.toUtc(at(2, 59)), start + at(2, 59));
    QCOMPARE(day.toUtc(at(2, 0)), start + at(3, 0));
    QCOMPARE(day.toUtc(at(2, 1)), start + at(3, 1));
    QCOMPARE(day.toUtc(at(3, 0)), start + at(4, 0));
    QCOMPARE(day.toUtc(at(23, 59)), start + at(24, 59));
}

void tst_localday::endOfSummerTime_clockSetBack_isNotTheSecondHour()
{
    LocalDay day(QDate(2026, 10, 25), QTimeZone("Europe/Berlin"));
    const qint64 start = day.start();
    QCOMPARE(day.toUtc(at(12, 0)), start + at(13, 0));
    QCOMPARE(day.toUtc(at(11, 0)), start + at(12, 0));
}

void tst_localday::startOfSummerTime_skippedHour_isConverted()
{
    LocalDay day(QDate(2026, 3, 29), QTimeZone("Europe/Berlin"));
    const qint64 start = day.start();
    QCOMPARE(day.toUtc(at(1, 59)), start + at(1, 59));
    QCOMPARE(day.toUtc(at(2, 30)), start + at(2, 30));
    QCOMPARE(day.toUtc(at(3, 0)), start + at(2, 0));
}

QTEST_GUILESS_MAIN(tst_localday)
#include "tst_localday.moc"
