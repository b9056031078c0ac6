// SPDX-License-Identifier: GPL-3.0-or-later
#include "minutetick.h"

#include <QTest>

class tst_minutetick : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void minuteMark_onlyAtSecondZero();
    void delay_aimsWithinTheSecond_data();
    void delay_aimsWithinTheSecond();
    void ticks_anyPhase_markEachMinuteOnce();
};

void tst_minutetick::minuteMark_onlyAtSecondZero()
{
    for (int second = 0; second < 60; ++second) {
        QCOMPARE(ork2::isMinuteMark(QTime(12, 34, second, 999)), second == 0);
    }
}

void tst_minutetick::delay_aimsWithinTheSecond_data()
{
    QTest::addColumn<int>("msec");
    QTest::addColumn<int>("delay");
    QTest::newRow("at the target") << 300 << 1000;
    QTest::newRow("a little early") << 100 << 1000;
    QTest::newRow("a little late") << 500 << 1000;
    QTest::newRow("too early") << 99 << 1201;
    QTest::newRow("too late") << 501 << 799;
    QTest::newRow("just before a second boundary") << 999 << 301;
    QTest::newRow("just after a second boundary") << 0 << 1300;
}

void tst_minutetick::delay_aimsWithinTheSecond()
{
    QFETCH(const int, msec);
    QFETCH(const int, delay);
    QCOMPARE(ork2::nextTickDelayMs(QTime(12, 34, 56, msec)), delay);
}

// For each position of the first tick within the second, with a timer that is 5 ms late.
void tst_minutetick::ticks_anyPhase_markEachMinuteOnce()
{
    for (int phase = 0; phase < 1000; ++phase) {
        QTime now(12, 0, 0, phase);
        now = now.addMSecs(ork2::nextTickDelayMs(now));
        int marks = 0;
        while (now < QTime(12, 10, 30)) {
            marks += ork2::isMinuteMark(now) ? 1 : 0;
            now = now.addMSecs(ork2::nextTickDelayMs(now) + 5);
        }
        QCOMPARE(marks, 10);
    }
}

QTEST_GUILESS_MAIN(tst_minutetick)
#include "tst_minutetick.moc"
