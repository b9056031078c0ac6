// SPDX-License-Identifier: GPL-3.0-or-later
#include "errorsscenario.h"

#include <QHash>
#include <QSet>
#include <QTest>

#include <algorithm>

using namespace ork2;

namespace {

constexpr int kReadings = 300; // more than two rounds of all blocks

QList<QByteArray> frames(quint32 seed)
{
    ErrorsScenario scenario(seed);
    QList<QByteArray> result;
    for (int i = 0; i < kReadings; ++i) {
        result.append(std::get<Transmission>(scenario.next().value()).bytes);
    }
    return result;
}

// Returns the code, or an empty text for a measured height.
QByteArray code(const QByteArray &field)
{
    static const QSet<QByteArray> codes{"7777", "8888", "9999"};
    return codes.contains(field) ? field : QByteArray();
}

QByteArray kind(const QByteArray &frame)
{
    return code(frame.mid(2, 4)) + '/' + code(frame.mid(6, 4));
}

} // namespace

class tst_errorsscenario : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps_sameSeed_areTheSame();
    void steps_areCompleteFrames();
    void steps_oneRound_containEveryPair();
    void blocks_areSeparatedByNormalReadings();
};

void tst_errorsscenario::steps_sameSeed_areTheSame()
{
    QCOMPARE(frames(5), frames(5));
    QVERIFY(frames(5) != frames(6));
}

void tst_errorsscenario::steps_areCompleteFrames()
{
    for (const QByteArray &frame : frames(1)) {
        QCOMPARE(frame.size(), 11);
        QCOMPARE(frame.front(), 'H');
        QCOMPARE(frame.back(), '\r');
        const QByteArray digits = frame.mid(1, 9);
        QVERIFY(
            std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }));
    }
}

void tst_errorsscenario::steps_oneRound_containEveryPair()
{
    QSet<QByteArray> seen;
    for (const QByteArray &frame : frames(1)) {
        seen.insert(kind(frame));
    }
    const QList<QByteArray> codes{"", "7777", "8888", "9999"};
    for (const QByteArray &first : codes) {
        for (const QByteArray &second : codes) {
            QVERIFY2(seen.contains(first + '/' + second), (first + '/' + second).constData());
        }
    }
}

void tst_errorsscenario::blocks_areSeparatedByNormalReadings()
{
    QByteArray previous = "/";
    int normal = 0;
    for (const QByteArray &frame : frames(2)) {
        const QByteArray current = kind(frame);
        if (current != "/" && previous == "/") {
            QVERIFY2(normal >= 3 && normal <= 6, qPrintable(QString::number(normal)));
        }
        if (current != "/" && previous != "/") {
            QCOMPARE(current, previous);
        }
        normal = current == "/" ? (previous == "/" ? normal + 1 : 1) : 0;
        previous = current;
    }
}

QTEST_GUILESS_MAIN(tst_errorsscenario)
#include "tst_errorsscenario.moc"
