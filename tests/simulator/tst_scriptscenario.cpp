// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptscenario.h"

#include <QTest>

using namespace ork2;
using namespace std::chrono_literals;

namespace {

QByteArray played(Script script, int most)
{
    ScriptScenario scenario(std::move(script));
    QByteArray result;
    for (int i = 0; i < most; ++i) {
        const std::optional<Step> step = scenario.next();
        if (!step) {
            return result + '.';
        }
        result += std::get<Transmission>(*step).bytes;
    }
    return result;
}

} // namespace

class tst_scriptscenario : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void steps_withTimes_areRepeated();
    void end_withoutRepeat_isReturnedRepeatedly();
    void end_withRepeat_restarts();
};

void tst_scriptscenario::steps_withTimes_areRepeated()
{
    QCOMPARE(played({{{Transmission{"a"}, 2}, {Transmission{"b"}, 1}, {Transmission{"c"}, 3}}}, 20),
        QByteArray("aabccc."));
}

void tst_scriptscenario::end_withoutRepeat_isReturnedRepeatedly()
{
    ScriptScenario scenario({{{Silence{5ms}}}});
    QVERIFY(scenario.next() == Step(Silence{5ms}));
    QVERIFY(!scenario.next());
    QVERIFY(!scenario.next());
}

void tst_scriptscenario::end_withRepeat_restarts()
{
    QCOMPARE(
        played({{{Transmission{"a"}, 2}, {Transmission{"b"}, 1}}, true}, 7), QByteArray("aabaaba"));
}

QTEST_GUILESS_MAIN(tst_scriptscenario)
#include "tst_scriptscenario.moc"
