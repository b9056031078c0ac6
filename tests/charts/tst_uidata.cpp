// SPDX-License-Identifier: GPL-3.0-or-later
#include "uidata.h"

#include "metamembers.h"

#include <QSignalSpy>
#include <QTest>

class tst_uidata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject_members_areInDeclaredOrder();
    void newData_withoutSeries_doesNothing();
    void newData_withSeries_appendsPointAndLogsCount();
    void newData_overCapacity_requestsRemovalOnce();
    void setXy_sameSeriesTwice_notifiesOnce();
    void setXy_replacedOwnChild_isDeleted();
    void setXy_replacedForeignSeries_isNotDeleted();
    void setXy_seriesDeletedElsewhere_isReset();
    void bounds_areZero();
};

void tst_uidata::metaObject_members_areInDeclaredOrder()
{
    const QMetaObject &meta = UiData::staticMetaObject;
    const QByteArrayList methods = methodSignatures(meta);
    QCOMPARE(methods,
        QByteArrayList({"xyChanged()", "xminChanged()", "xmaxChanged()", "yminChanged()",
            "ymaxChanged()", "removeGPoints()", "newData(double,double)"}));
    QByteArrayList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        properties << meta.property(i).name();
    }
    QCOMPARE(properties, QByteArrayList({"xy", "xmin", "xmax", "ymin", "ymax"}));
}

void tst_uidata::newData_withoutSeries_doesNothing()
{
    UiData data;
    QSignalSpy removals(&data, &UiData::removeGPoints);
    int logLines = 0;
    static int *counter = nullptr;
    counter = &logLines;
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &) { ++*counter; });
    data.newData(1.0, 2.0);
    qInstallMessageHandler(previous);
    QCOMPARE(logLines, 0);
    QCOMPARE(removals.count(), 0);
    QCOMPARE(data.xy(), nullptr);
}

void tst_uidata::newData_withSeries_appendsPointAndLogsCount()
{
    UiData data;
    QScatterSeries series;
    data.setXy(&series);
    QTest::ignoreMessage(QtDebugMsg, "mXy count:  1");
    data.newData(1000.0, 1500.0);
    QCOMPARE(series.points(), QList<QPointF>({{1000.0, 1500.0}}));
}

void tst_uidata::newData_overCapacity_requestsRemovalOnce()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    UiData data;
    QScatterSeries series;
    data.setXy(&series);
    QSignalSpy removals(&data, &UiData::removeGPoints);
    QList<QPointF> almostFull;
    for (int i = 0; i < 10319; ++i) {
        almostFull.append(QPointF(i, 0));
    }
    series.replace(almostFull);
    data.newData(10319, 0);
    QCOMPARE(removals.count(), 0);
    data.newData(10320, 0);
    QCOMPARE(series.count(), 10321);
    QCOMPARE(removals.count(), 1);
    qInstallMessageHandler(nullptr);
}

void tst_uidata::setXy_sameSeriesTwice_notifiesOnce()
{
    UiData data;
    QScatterSeries series;
    QSignalSpy changes(&data, &UiData::xyChanged);
    data.setXy(&series);
    data.setXy(&series);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(data.xy(), &series);
}

void tst_uidata::setXy_replacedOwnChild_isDeleted()
{
    UiData data;
    const QPointer<QScatterSeries> own = new QScatterSeries(&data);
    QScatterSeries next;
    data.setXy(own);
    data.setXy(&next);
    QVERIFY(own.isNull());
    QCOMPARE(data.xy(), &next);
}

void tst_uidata::setXy_replacedForeignSeries_isNotDeleted()
{
    UiData data;
    QObject chart;
    const QPointer<QScatterSeries> foreign = new QScatterSeries(&chart);
    QScatterSeries next;
    data.setXy(foreign);
    data.setXy(&next);
    QVERIFY(!foreign.isNull());
}

void tst_uidata::setXy_seriesDeletedElsewhere_isReset()
{
    UiData data;
    auto *series = new QScatterSeries;
    data.setXy(series);
    delete series;
    data.newData(1.0, 2.0);
    QCOMPARE(data.xy(), nullptr);
}

void tst_uidata::bounds_areZero()
{
    const UiData data;
    QCOMPARE(data.xmin(), 0.0);
    QCOMPARE(data.xmax(), 0.0);
    QCOMPARE(data.ymin(), 0.0);
    QCOMPARE(data.ymax(), 0.0);
}

QTEST_MAIN(tst_uidata)
#include "metamembers.h"
#include "tst_uidata.moc"
