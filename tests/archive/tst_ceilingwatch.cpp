// SPDX-License-Identifier: GPL-3.0-or-later
#include "ceilingwatch.h"
#include "samples.h"

using namespace ork2;
using namespace samples;
using Kind = WatchEvent::Kind;

namespace {

QString text(const QList<WatchEvent> &events)
{
    static const QStringList names{QStringLiteral("below"), QStringLiteral("above"),
        QStringLiteral("silence"), QStringLiteral("resumed")};
    QStringList texts;
    for (const WatchEvent &event : events) {
        texts += names.at(static_cast<int>(event.kind))
            + (event.threshold > 0 ? QString::number(event.threshold) : QString());
    }
    return texts.join(u' ');
}

} // namespace

class tst_ceilingwatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_watch.start({true, {60, 200, 100}, 30}, kStart); }
    void threshold_isPassedOnceEachWay();
    void hysteresis_keepsTheAlarm();
    void fall_throughAllThresholds_reportsAll();
    void noCloud_endsTheAlarm();
    void code_changesNothing();
    void secondLayerAlone_counts();
    void silence_afterThreeMinutes_isReportedOnce();
    void silence_beganWithTheLastLine();
    void oldSample_isIgnored();

private:
    CeilingWatch m_watch;
};

void tst_ceilingwatch::threshold_isPassedOnceEachWay()
{
    QCOMPARE(text(m_watch.add(height(0, 200))), QString());
    QCOMPARE(text(m_watch.add(height(1, 199))), QStringLiteral("below200"));
    QCOMPARE(text(m_watch.add(height(2, 150))), QString());
    QCOMPARE(m_watch.low()->time, kStart + 60);
    QCOMPARE(m_watch.low()->threshold, 200);
    QCOMPARE(text(m_watch.add(height(3, 400))), QStringLiteral("above200"));
    QVERIFY(!m_watch.low());
}

void tst_ceilingwatch::hysteresis_keepsTheAlarm()
{
    QCOMPARE(text(m_watch.add(height(0, 190))), QStringLiteral("below200"));
    QCOMPARE(text(m_watch.add(height(1, 229))), QString());
    QCOMPARE(text(m_watch.add(height(2, 190))), QString());
    QCOMPARE(text(m_watch.add(height(3, 230))), QStringLiteral("above200"));
}

void tst_ceilingwatch::fall_throughAllThresholds_reportsAll()
{
    QCOMPARE(text(m_watch.add(height(0, 40))), QStringLiteral("below200 below100 below60"));
    QCOMPARE(m_watch.low()->threshold, 60);
    QCOMPARE(text(m_watch.add(height(1, 95))), QStringLiteral("above60"));
    QCOMPARE(m_watch.low()->threshold, 100);
}

void tst_ceilingwatch::noCloud_endsTheAlarm()
{
    QCOMPARE(text(m_watch.add(height(0, 190))), QStringLiteral("below200"));
    QCOMPARE(text(m_watch.add(height(1, 5000))), QStringLiteral("above200"));
}

void tst_ceilingwatch::code_changesNothing()
{
    QCOMPARE(text(m_watch.add(height(0, 190))), QStringLiteral("below200"));
    QCOMPARE(text(m_watch.add(height(1, 9999, 9999))), QString());
    QVERIFY(m_watch.low());
}

void tst_ceilingwatch::secondLayerAlone_counts()
{
    QCOMPARE(text(m_watch.add(height(0, 5000, 150))), QStringLiteral("below200"));
}

void tst_ceilingwatch::silence_afterThreeMinutes_isReportedOnce()
{
    QCOMPARE(text(m_watch.tick(kStart + 179)), QString());
    QCOMPARE(text(m_watch.tick(kStart + 180)), QStringLiteral("silence"));
    QCOMPARE(text(m_watch.tick(kStart + 181)), QString());
    QCOMPARE(m_watch.silence()->time, kStart);
    QCOMPARE(text(m_watch.add(height(4, 400))), QStringLiteral("resumed"));
    QVERIFY(!m_watch.silence());
}

void tst_ceilingwatch::silence_beganWithTheLastLine()
{
    QCOMPARE(text(m_watch.add(height(2, 400))), QString());
    QCOMPARE(text(m_watch.tick(kStart + 299)), QString());
    const QList<WatchEvent> events = m_watch.tick(kStart + 300);
    QCOMPARE(text(events), QStringLiteral("silence"));
    QCOMPARE(events.first().time, kStart + 120);
}

void tst_ceilingwatch::oldSample_isIgnored()
{
    QCOMPARE(text(m_watch.add(height(5, 400))), QString());
    QCOMPARE(text(m_watch.add(height(4, 50))), QString());
    QCOMPARE(text(m_watch.add(height(5, 50))), QString());
}

QTEST_GUILESS_MAIN(tst_ceilingwatch)
#include "tst_ceilingwatch.moc"
