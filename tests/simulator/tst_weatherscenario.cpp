// SPDX-License-Identifier: GPL-3.0-or-later
#include "weatherscenario.h"

#include <QTest>

#include <cstdlib>
#include <vector>

using namespace ork2;

namespace {

constexpr int kReadings = 20000;
constexpr int kClearSky = 3000;

std::vector<Reading> readings(quint32 seed)
{
    WeatherScenario scenario(seed);
    std::vector<Reading> result;
    result.reserve(kReadings);
    for (int i = 0; i < kReadings; ++i) {
        result.push_back(scenario.nextReading());
    }
    return result;
}

bool isClear(const Reading &reading)
{
    return reading.firstLayer == 0 || reading.firstLayer == kClearSky;
}

} // namespace

class tst_weatherscenario : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps_sameSeed_areTheSame();
    void steps_otherSeed_differ();
    void steps_areReadings();
    void heights_ofClouds_arePlausible();
    void base_fromReadingToReading_driftsSlowly();
    void sky_overHours_isClearWithBothValues();
    void secondLayer_overHours_isTemporary();
    void channel_overHours_changesOccasionally();
};

void tst_weatherscenario::steps_sameSeed_areTheSame()
{
    QVERIFY(readings(3) == readings(3));
}

void tst_weatherscenario::steps_otherSeed_differ()
{
    QVERIFY(readings(3) != readings(4));
}

void tst_weatherscenario::steps_areReadings()
{
    WeatherScenario scenario(1);
    WeatherScenario twin(1);
    for (int i = 0; i < kReadings; ++i) {
        const std::optional<Step> step = scenario.next();
        QVERIFY(step.has_value());
        QVERIFY(*step == Step(Transmission{readingFrame(twin.nextReading())}));
    }
}

void tst_weatherscenario::heights_ofClouds_arePlausible()
{
    for (const Reading &reading : readings(1)) {
        if (isClear(reading)) {
            QCOMPARE(reading.secondLayer, reading.firstLayer);
            continue;
        }
        QVERIFY(reading.firstLayer > 40 && reading.firstLayer < 2900);
        QVERIFY(reading.secondLayer == 0
            || (reading.secondLayer > reading.firstLayer + 200 && reading.secondLayer <= 4900));
        QVERIFY(reading.secondLayer != kClearSky);
    }
}

void tst_weatherscenario::base_fromReadingToReading_driftsSlowly()
{
    int lowest = kMaxHeight;
    int highest = 0;
    const std::vector<Reading> all = readings(1);
    for (std::size_t i = 1; i < all.size(); ++i) {
        if (isClear(all[i]) || isClear(all[i - 1])) {
            continue;
        }
        QVERIFY(std::abs(all[i].firstLayer - all[i - 1].firstLayer) <= 60);
        lowest = std::min(lowest, all[i].firstLayer);
        highest = std::max(highest, all[i].firstLayer);
    }
    QVERIFY(highest - lowest > 1000);
}

void tst_weatherscenario::sky_overHours_isClearWithBothValues()
{
    int clouds = 0;
    int sentAsZero = 0;
    int sentAsLimit = 0;
    for (const Reading &reading : readings(1)) {
        clouds += isClear(reading) ? 0 : 1;
        sentAsZero += reading.firstLayer == 0 ? 1 : 0;
        sentAsLimit += reading.firstLayer == kClearSky ? 1 : 0;
    }
    QVERIFY(sentAsZero > 0);
    QVERIFY(sentAsLimit > 0);
    QVERIFY(clouds > 2 * (sentAsZero + sentAsLimit));
}

void tst_weatherscenario::secondLayer_overHours_isTemporary()
{
    int changes = 0;
    bool present = true;
    for (const Reading &reading : readings(1)) {
        if (isClear(reading)) {
            continue;
        }
        changes += (reading.secondLayer != 0) != present ? 1 : 0;
        present = reading.secondLayer != 0;
    }
    QVERIFY2(changes > 20 && changes < 500, qPrintable(QString::number(changes)));
}

void tst_weatherscenario::channel_overHours_changesOccasionally()
{
    int changes = 0;
    int onReserve = 0;
    Channel channel = Channel::Main;
    for (const Reading &reading : readings(1)) {
        QVERIFY(reading.channel == Channel::Main || reading.channel == Channel::Reserve);
        changes += reading.channel != channel ? 1 : 0;
        onReserve += reading.channel == Channel::Reserve ? 1 : 0;
        channel = reading.channel;
    }
    QVERIFY2(changes > 10 && changes < 200, qPrintable(QString::number(changes)));
    QVERIFY(onReserve < kReadings / 3);
}

QTEST_GUILESS_MAIN(tst_weatherscenario)
#include "tst_weatherscenario.moc"
