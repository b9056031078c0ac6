// SPDX-License-Identifier: GPL-3.0-or-later
#include "samples.h"
#include "tenminutes.h"

using namespace ork2;
using namespace samples;

namespace {

// The heights of minutes 1 to 10; the report ends at minute 10.
TenMinutes report(const std::vector<int> &heights)
{
    std::vector<Sample> values;
    for (std::size_t i = 0; i < heights.size(); ++i) {
        values.push_back(height(static_cast<int>(i) + 1, heights[i]));
    }
    return reportTenMinutes(history(values), kStart + 600);
}

} // namespace

class tst_tenminutes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void report_usesTheLastTenMinutes();
    void report_givesMedianAndLowest();
    void trend_ignoresOneFalseHeight();
    void trend_belowItsLimit_isSteady();
    void noCloud_hasItsCodes();
    void noLine_isUnknown();
    void text_hasAllValues();
};

void tst_tenminutes::report_usesTheLastTenMinutes()
{
    const TenMinutes result = reportTenMinutes(
        history({height(0, 100), height(1, 300), height(10, 200), height(11, 50)}), kStart + 600);
    QCOMPARE(result.received, 2);
    QCOMPARE(*result.lowest, 200);
}

void tst_tenminutes::report_givesMedianAndLowest()
{
    const TenMinutes result = report({420, 430, 5000, 7777, 410, 440});
    QCOMPARE(result.received, 6);
    QCOMPARE(result.heights, 4);
    QCOMPARE(result.noCloud, 1);
    QCOMPARE(*result.median, 420);
    QCOMPARE(*result.lowest, 410);
    QVERIFY(!result.trend);
}

void tst_tenminutes::trend_ignoresOneFalseHeight()
{
    const TenMinutes result = report({500, 490, 480, 470, 30, 450, 440, 430, 420, 410});
    QCOMPARE(*result.trend, -100);
    QCOMPARE(trendText(result), QStringLiteral("понижается на 100 м за 10 минут"));
}

void tst_tenminutes::trend_belowItsLimit_isSteady()
{
    QCOMPARE(trendText(report({500, 501, 502, 503, 504, 505})), QStringLiteral("без перемен"));
    QCOMPARE(trendText(report({500, 502, 504, 506, 508, 510})),
        QStringLiteral("повышается на 20 м за 10 минут"));
    QCOMPARE(trendText(report({500, 520, 540, 560})), QStringLiteral("нет"));
}

void tst_tenminutes::noCloud_hasItsCodes()
{
    const TenMinutes result = report({5000, 5000});
    QCOMPARE(figureText(result, result.median), QStringLiteral("9"));
    QCOMPARE(groupText(result, result.median), QStringLiteral("NCD"));
    QCOMPARE(reportText(result, QStringLiteral("08:05–08:15")),
        QStringLiteral("08:05–08:15: облаков нет; h = 9, NCD"));
}

void tst_tenminutes::noLine_isUnknown()
{
    const TenMinutes result = report({7777});
    QCOMPARE(figureText(result, result.median), QStringLiteral("/"));
    QCOMPARE(groupText(result, result.median), QStringLiteral("//////"));
    QCOMPARE(reportText(result, QStringLiteral("t")), QStringLiteral("t: высоты нет"));
}

void tst_tenminutes::text_hasAllValues()
{
    QCOMPARE(reportText(report({420, 380, 420, 430, 410}), QStringLiteral("08:05–08:15")),
        QStringLiteral("08:05–08:15: медиана 420 м, h = 4, ///013; наименьшая 380 м, h = 4, "
                       "///012; тенденция: без перемен"));
}

QTEST_GUILESS_MAIN(tst_tenminutes)
#include "tst_tenminutes.moc"
