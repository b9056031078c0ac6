// SPDX-License-Identifier: GPL-3.0-or-later
#include "faultsscenario.h"

#include <QRegularExpression>
#include <QTest>

using namespace ork2;
using namespace std::chrono_literals;

namespace {

constexpr int kSteps = 3000;
constexpr auto kPeriod = 100ms;

std::vector<Step> steps(quint32 seed)
{
    FaultsScenario scenario(seed, kPeriod);
    std::vector<Step> result;
    result.reserve(kSteps);
    for (int i = 0; i < kSteps; ++i) {
        result.push_back(scenario.next().value());
    }
    return result;
}

bool isGood(const QByteArray &bytes)
{
    static const QRegularExpression frame(
        QRegularExpression::anchoredPattern(QStringLiteral("H[01][0-9]{8}\\r")));
    return frame.match(QString::fromLatin1(bytes)).hasMatch();
}

} // namespace

class tst_faultsscenario : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps_sameSeed_areTheSame();
    void steps_longRun_containEveryFault();
    void bytes_corruptedReadings_comeFromTheWeather();
    void pauses_lastWholePeriods();
    void faults_areSeparatedByGoodReadings();
};

void tst_faultsscenario::steps_sameSeed_areTheSame()
{
    QVERIFY(steps(5) == steps(5));
    QVERIFY(steps(5) != steps(6));
}

void tst_faultsscenario::steps_longRun_containEveryFault()
{
    int shorter = 0;
    int longer = 0;
    int changed = 0;
    int noise = 0;
    int silences = 0;
    int unpluggings = 0;
    for (const Step &step : steps(1)) {
        silences += std::holds_alternative<Silence>(step) ? 1 : 0;
        unpluggings += std::holds_alternative<Unplugging>(step) ? 1 : 0;
        const auto *transmission = std::get_if<Transmission>(&step);
        if (!transmission) {
            continue;
        }
        const qsizetype size = transmission->bytes.size();
        QVERIFY(size >= 1 && size <= 300);
        shorter += size == 10 ? 1 : 0;
        longer += size == 12 ? 1 : 0;
        changed += size == 11 && !isGood(transmission->bytes) ? 1 : 0;
        noise += size > 12 ? 1 : 0;
    }
    for (const int count : {shorter, longer, changed, noise, silences, unpluggings}) {
        QVERIFY2(count > 10, qPrintable(QString::number(count)));
    }
}

void tst_faultsscenario::bytes_corruptedReadings_comeFromTheWeather()
{
    WeatherScenario weather(1);
    bool lost = false;
    bool added = false;
    for (const Step &step : steps(1)) {
        const auto *transmission = std::get_if<Transmission>(&step);
        if (!transmission) {
            continue;
        }
        const QByteArray &bytes = transmission->bytes;
        if (bytes.size() > 12 || (lost && added && !isGood(bytes))) {
            break;
        }
        const QByteArray frame = readingFrame(weather.nextReading());
        // Removing one byte from the longer one must result in the shorter one.
        const auto becomes = [](const QByteArray &from, const QByteArray &to) {
            for (qsizetype place = 0; place < from.size(); ++place) {
                if (QByteArray(from).remove(place, 1) == to) {
                    return true;
                }
            }
            return false;
        };
        if (bytes.size() == 11) {
            QCOMPARE(bytes, frame);
        } else if (bytes.size() == 10) {
            lost = true;
            QVERIFY(becomes(frame, bytes));
        } else {
            added = true;
            QVERIFY(becomes(bytes, frame));
        }
    }
    QVERIFY(lost);
    QVERIFY(added);
}

void tst_faultsscenario::pauses_lastWholePeriods()
{
    for (const Step &step : steps(1)) {
        if (const auto *silence = std::get_if<Silence>(&step)) {
            QVERIFY(silence->duration >= 3 * kPeriod && silence->duration <= 40 * kPeriod);
            QCOMPARE(silence->duration % kPeriod, 0ms);
        }
        if (const auto *unplugging = std::get_if<Unplugging>(&step)) {
            QVERIFY(unplugging->duration >= 2 * kPeriod && unplugging->duration <= 10 * kPeriod);
            QCOMPARE(unplugging->duration % kPeriod, 0ms);
        }
    }
}

void tst_faultsscenario::faults_areSeparatedByGoodReadings()
{
    int good = 0;
    for (const Step &step : steps(1)) {
        const auto *transmission = std::get_if<Transmission>(&step);
        if (transmission && isGood(transmission->bytes)) {
            ++good;
            continue;
        }
        QVERIFY2(good >= 3, qPrintable(QString::number(good)));
        good = 0;
    }
}

QTEST_GUILESS_MAIN(tst_faultsscenario)
#include "tst_faultsscenario.moc"
