// SPDX-License-Identifier: GPL-3.0-or-later
#include "timewindow.h"

#include <QTest>

class tst_timewindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void next_cycles();
    void next_ofAnyOtherWidth_isNone();
};

void tst_timewindow::next_cycles()
{
    ork2::TimeWindow window = ork2::firstTimeWindow();
    QList<int> widths;
    QStringList names;
    for (int step = 0; step < 4; ++step) {
        widths << window.seconds;
        names << window.chartName;
        const auto next = ork2::nextTimeWindow(window.seconds);
        QVERIFY(next.has_value());
        window = *next;
    }
    QCOMPARE(widths, QList<int>({600, 3600, 10800, 600}));
    const QString tenMinutes = QStringLiteral("Высота нижней границы облачности (10 минут)");
    QCOMPARE(names,
        QStringList({tenMinutes, QStringLiteral("Высота нижней границы облачности (1 час)"),
            QStringLiteral("Высота нижней границы облачности (3 часа)"), tenMinutes}));
}

void tst_timewindow::next_ofAnyOtherWidth_isNone()
{
    for (const int seconds : {0, -1, 599, 601, 7200}) {
        QVERIFY(!ork2::nextTimeWindow(seconds));
    }
}

QTEST_GUILESS_MAIN(tst_timewindow)
#include "tst_timewindow.moc"
