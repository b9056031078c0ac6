// SPDX-License-Identifier: GPL-3.0-or-later
#include "mainbackend.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "metamembers.h"
#include "profile.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <memory>
#include <vector>

namespace {

QDateTime g_now;
QDateTime fakeNow()
{
    return g_now;
}

// Returns the name and the arguments of an emitted signal.
QStringList textOf(const QMetaMethod &signal, const QVariantList &arguments)
{
    QStringList text{QString::fromLatin1(signal.name())};
    for (const QVariant &argument : arguments) {
        text << argument.toString();
    }
    return text;
}

// Records all signals of an object in the order of emission, as "name argument argument".
class Recorder : public QObject
{
    Q_OBJECT

public:
    explicit Recorder(QObject &sender)
    {
        const QMetaObject *meta = sender.metaObject();
        for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
            const QMetaMethod signal = meta->method(i);
            if (signal.methodType() == QMetaMethod::Signal) {
                m_spies.push_back(std::make_unique<QSignalSpy>(&sender, signal));
                QMetaObject::connect(
                    &sender, i, this, staticMetaObject.indexOfSlot("note()"), Qt::DirectConnection);
            }
        }
    }

    [[nodiscard]] QStringList take()
    {
        QStringList result;
        result.swap(m_order);
        return result;
    }

private Q_SLOTS:
    void note()
    {
        const QMetaMethod signal = sender()->metaObject()->method(senderSignalIndex());
        for (const auto &spy : m_spies) {
            if (signal.methodSignature() == QMetaObject::normalizedSignature(spy->signal())) {
                m_order << textOf(signal, spy->constLast()).join(u' ');
            }
        }
    }

private:
    std::vector<std::unique_ptr<QSignalSpy>> m_spies;
    QStringList m_order;
};

} // namespace

class tst_mainbackend : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openedFolder(const QUrl &url) { m_opened = url; }

private Q_SLOTS:
    void init();
    void cleanup();

    void metaObject_members_areInDeclaredOrder();
    void metaObject_properties_areInDeclaredOrder();
    void construction_stoppedTimers_andValues();
    void construction_store_isRead();

    void start_opensPortAndStartsTimers();
    void stop_emitsSignalsInOrder();
    void switch_true_stopsAndKeepsPlottedValues();
    void switch_false_searchesAndStarts();

    void watchdog_silentInstrument_isLostOnThe31stSecond();
    void watchdog_loss_emitsSignalsInOrder();
    void watchdog_answerAfterLoss_restartsSaveTimer();
    void watchdog_everyTick_emitsChannel();

    void minuteMark_onlyAtSecondZero_data();
    void minuteMark_onlyAtSecondZero();
    void minuteMark_from59To1_isMissed();
    void saveTick_driftingPhase_marksEachMinuteOnce();
    void saveTick_handledLate_marksTheMinuteOnce();
    void saveTick_afterStopOrLoss_startsWithDefaultInterval();
    void saveTick_halfASecondLate_marksEachMinute();

    void plotTick_emitsBothValuesThenMovesAxes();

    void reading_classification_data();
    void reading_classification();
    void channel_onlyZeroAndOneCount();
    void workerLamp_false_closesPort();
    void lamps_areForwarded();
    void message_whileStopped_showsStoppedTextLater();
    void message_whileMeasuring_createsNoTimer();
    void controlPanel_isRequestedAfterDelay();

    void portSearch_selectsTheOnlyAdapter_data();
    void portSearch_selectsTheOnlyAdapter();
    void portName_saved_isStoredWithoutSignal();
    void portName_updated_isReadAndEmitted();
    void unit_saved_isStoredAndEmitted();
    void unit_emptyText_isKept();
    void dataFolder_isOpened_data();
    void dataFolder_isOpened();

    void timeWindow_followsRange();
    void range_cycles_data();
    void range_cycles();
    void properties_unchangedValue_isSilent();
    void axes_setAndRead_data();
    void axes_setAndRead();
    void axes_ownerDestroyed_noDanglingPointer();
    void axes_destruction_deletesThemLater();
    void thinning_isForwardedToTheDocument();

private:
    QScopedPointer<LogCapture> m_log;
    QScopedPointer<mainBackEnd> m_backEnd;
    QScopedPointer<MainBackEndProbe> m_probe;
    QUrl m_opened;
};

void tst_mainbackend::init()
{
    profile::clear();
    m_log.reset(new LogCapture);
    m_backEnd.reset(new mainBackEnd);
    m_probe.reset(new MainBackEndProbe(*m_backEnd));
    noReplyCounter.storeRelaxed(0);
    g_now = QDateTime(QDate(2026, 11, 15), QTime(12, 34, 56, 500));
}

void tst_mainbackend::cleanup()
{
    if (m_backEnd) {
        m_probe->endWorker();
    }
    m_backEnd.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings, QStringList());
}

void tst_mainbackend::metaObject_members_areInDeclaredOrder()
{
    const QByteArrayList expected{"savesettings(QString,int,int,int,int,int)",
        "writeData(QString,QByteArray)", "sendCounter(QString)", "startButtonClicked()",
        "stopButtonClicked()", "plugPlayComSettings(int,int,QString)", "firstCloudAlt(QString)",
        "noFlashError()", "noDataError()", "noReadyError()", "noError()", "secondCloudAlt(QString)",
        "clearGraphData()", "chanelLED(bool)", "dropFCloud(double,double)",
        "dropSCloud(double,double)", "timeToData(QString,QString)",
        "sendUnitYearNumber(QString,QString)", "openControlPanel()", "updateMyTime()",
        "connectionLED(bool)", "dataLED(bool)", "serverLED(bool)", "sendActualPortNumber(QString)",
        "connectionErrorClouds(QString,QString)", "updateVoidGraph()", "lineAxisYChanged()",
        "logAxisYChanged()", "enabledButtonChanged()", "xMinRangeChanged()", "chartNameChanged()",
        "WriteToPort(QString,QByteArray)", "startButtonSB(bool)", "showTheCloud(QString,QString)",
        "showTheCloudChanel(QString)", "on_action_openDataFolder_triggered()",
        "saveUnitYearNumber(QString,QString)", "saveComPortNumber(QString)", "showUnitYearNumber()",
        "updateComPortNumber()", "openCP()", "connectionLed(bool)", "severLed(bool)",
        "dataLed(bool)", "minTime()", "maxTime()", "setLogAxY()", "removeGPoints()",
        "setLogAxisY(QLogValueAxis*)", "setlineAxisY(QValueAxis*)", "on_error(QString)",
        "requestData()", "plotGraph()", "comSearch()", "timeToSaveData()", "enButton()",
        "disableButton()", "changeRangeX()"};
    const QMetaObject &meta = mainBackEnd::staticMetaObject;
    const QByteArrayList actual = methodSignatures(meta);
    QCOMPARE(actual, expected);
    const auto returns = [&meta](const char *signature) {
        return QByteArray(meta.method(meta.indexOfMethod(signature)).typeName());
    };
    QCOMPARE(returns("minTime()"), "QDateTime");
    QCOMPARE(returns("maxTime()"), "QDateTime");
    QCOMPARE(returns("comSearch()"), "bool");
    QCOMPARE(meta.method(meta.indexOfMethod("requestData()")).access(), QMetaMethod::Private);
}

void tst_mainbackend::metaObject_properties_areInDeclaredOrder()
{
    const QMetaObject &meta = mainBackEnd::staticMetaObject;
    QByteArrayList actual;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QVERIFY(property.isWritable());
        actual << property.name() + QByteArray(" ") + property.notifySignal().name();
    }
    QCOMPARE(actual,
        QByteArrayList({"logAxisY logAxisYChanged", "lineAxisY lineAxisYChanged",
            "enabledButton enabledButtonChanged", "xMinRange xMinRangeChanged",
            "chartName chartNameChanged"}));
}

void tst_mainbackend::construction_stoppedTimers_andValues()
{
    QCOMPARE(m_probe->requestTimer()->interval(), 1000);
    QCOMPARE(m_probe->saveTimer()->interval(), 1000);
    QCOMPARE(m_probe->plotTimer()->interval(), 10000);
    for (const QTimer *timer :
        {m_probe->requestTimer(), m_probe->saveTimer(), m_probe->plotTimer()}) {
        QVERIFY(!timer->isActive());
        QVERIFY(!timer->isSingleShot());
        QCOMPARE(timer->timerType(), Qt::PreciseTimer);
        QCOMPARE(timer->parent(), m_backEnd.get());
    }
    QVERIFY(m_probe->workerRunning());
    QVERIFY(m_probe->workerThread()->isRunning());
    QCOMPARE(m_probe->comPort()->thread(), m_probe->workerThread());
    QCOMPARE(m_probe->comPort()->port().thread(), m_probe->workerThread());
    QVERIFY(!m_probe->comPort()->port().isOpen());
    QCOMPARE(m_probe->firstValue(), 5000.0);
    QCOMPARE(m_probe->secondValue(), 5000.0);
    QCOMPARE(m_probe->channel(), 0);
    QVERIFY(!m_probe->measuring());
    QVERIFY(!m_backEnd->enabledButton());
    QCOMPARE(m_backEnd->xMinRange(), 600);
    QCOMPARE(m_backEnd->chartName(), QStringLiteral("Высота нижней границы облачности (10 минут)"));
    QTRY_VERIFY(m_log->lines().contains(QStringLiteral("Com port in separate Thread!")));
    QVERIFY(!m_log->lines().filter(QRegularExpression(QStringLiteral("^Thread ID "))).isEmpty());
    QVERIFY(!m_log->lines().filter(QStringLiteral("Seriad port thread ID")).isEmpty());
}

void tst_mainbackend::construction_store_isRead()
{
    QVERIFY(m_log->lines().contains(QStringLiteral("C++: Unit number:  \"1\"")));
    QVERIFY(m_log->lines().contains(QStringLiteral("C++: Unit year:  \"2014\"")));
    QCOMPARE(currentPortName, QStringLiteral("----"));
}

void tst_mainbackend::start_opensPortAndStartsTimers()
{
    currentPortName = QStringLiteral("nowhere");
    Recorder recorder(*m_backEnd);
    m_backEnd->enButton();
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("savesettings nowhere 9600 8 0 1 0"),
            QStringLiteral("startButtonClicked"), QStringLiteral("enabledButtonChanged")}));
    QVERIFY(m_backEnd->enabledButton());
    QVERIFY(m_probe->requestTimer()->isActive());
    QVERIFY(m_probe->plotTimer()->isActive());
    QVERIFY(m_probe->saveTimer()->isActive());
    QVERIFY(m_probe->measuring());
    const QStringList lines = m_log->lines();
    QCOMPARE(lines.count(QStringLiteral("Запускаем таймер")), 1);
    QVERIFY(lines.contains(QStringLiteral("Порт:  \"nowhere\"")));
    QVERIFY(lines.contains(QStringLiteral("true")));
}

void tst_mainbackend::stop_emitsSignalsInOrder()
{
    m_backEnd->enButton();
    m_backEnd->showTheCloud(QStringLiteral("120"), QStringLiteral("240"));
    Recorder recorder(*m_backEnd);
    m_backEnd->disableButton();
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("stopButtonClicked"), QStringLiteral("enabledButtonChanged"),
            QStringLiteral("sendCounter  Статус: Прибор остановлен"),
            QStringLiteral("firstCloudAlt ----"), QStringLiteral("secondCloudAlt ----"),
            QStringLiteral("connectionLED false"), QStringLiteral("serverLED false"),
            QStringLiteral("dataLED false")}));
    QVERIFY(!m_probe->requestTimer()->isActive());
    QVERIFY(!m_probe->plotTimer()->isActive());
    QVERIFY(!m_probe->saveTimer()->isActive());
    QVERIFY(!m_probe->measuring());
    QCOMPARE(m_probe->firstValue(), 5000.0);
    QCOMPARE(m_probe->secondValue(), 5000.0);
    QVERIFY(m_log->lines().contains(QStringLiteral("Таймер остановлен")));
}

void tst_mainbackend::switch_true_stopsAndKeepsPlottedValues()
{
    m_backEnd->enButton();
    m_backEnd->showTheCloud(QStringLiteral("120"), QStringLiteral("240"));
    Recorder recorder(*m_backEnd);
    m_backEnd->startButtonSB(true);
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("stopButtonClicked"), QStringLiteral("enabledButtonChanged"),
            QStringLiteral("clearGraphData"),
            QStringLiteral("sendCounter  Статус: Прибор остановлен"),
            QStringLiteral("firstCloudAlt ----"), QStringLiteral("secondCloudAlt ----"),
            QStringLiteral("connectionLED false"), QStringLiteral("serverLED false"),
            QStringLiteral("dataLED false")}));
    QCOMPARE(m_probe->firstValue(), 120.0);
    QCOMPARE(m_probe->secondValue(), 240.0);
    QVERIFY(!m_probe->measuring());
    QVERIFY(!m_probe->saveTimer()->isActive());
}

void tst_mainbackend::switch_false_searchesAndStarts()
{
    currentPortName = QStringLiteral("nowhere");
    Recorder recorder(*m_backEnd);
    m_backEnd->startButtonSB(false);
    const QStringList emitted = recorder.take();
    QCOMPARE(emitted.size(), 4);
    QVERIFY(emitted.at(0).startsWith(QLatin1String("plugPlayComSettings 9600 0 ")));
    QCOMPARE(emitted.mid(1),
        QStringList({QStringLiteral("savesettings nowhere 9600 8 0 1 0"),
            QStringLiteral("startButtonClicked"), QStringLiteral("enabledButtonChanged")}));
    QVERIFY(m_probe->measuring());
    QVERIFY(m_probe->requestTimer()->isActive());
    QCOMPARE(currentPortName, QStringLiteral("nowhere"));
}

void tst_mainbackend::watchdog_silentInstrument_isLostOnThe31stSecond()
{
    m_backEnd->enButton();
    m_probe->requestTimer()->stop(); // the test calls the ticks
    QSignalSpy losses(m_backEnd.get(), &mainBackEnd::connectionErrorClouds);
    QList<int> lostAt;
    for (int second = 1; second <= 100; ++second) {
        m_probe->tickWatchdog();
        if (!losses.isEmpty()) {
            losses.clear();
            lostAt << second;
        }
    }
    QCOMPARE(lostAt, QList<int>({31, 56, 81}));
}

void tst_mainbackend::watchdog_loss_emitsSignalsInOrder()
{
    m_probe->saveTimer()->start();
    noReplyCounter.storeRelaxed(30);
    Recorder recorder(*m_backEnd);
    m_probe->tickWatchdog();
    // The fake reading is handled by a slot of the controller: heights and a hidden banner.
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("connectionLED false"), QStringLiteral("noError"),
            QStringLiteral("firstCloudAlt 5000"), QStringLiteral("secondCloudAlt 5000"),
            QStringLiteral("connectionErrorClouds 5000 5000"),
            QStringLiteral("sendCounter  Статус: Прибор отключен"), QStringLiteral("dataLED false"),
            QStringLiteral("chanelLED false")}));
    QVERIFY(!m_probe->saveTimer()->isActive());
    QCOMPARE(noReplyCounter.loadRelaxed(), 6);
    QCOMPARE(m_probe->firstValue(), 5000.0);
}

void tst_mainbackend::watchdog_answerAfterLoss_restartsSaveTimer()
{
    noReplyCounter.storeRelaxed(30);
    m_probe->tickWatchdog();
    QVERIFY(!m_probe->saveTimer()->isActive());
    noReplyCounter.storeRelaxed(0);
    m_probe->tickWatchdog();
    QVERIFY(m_probe->saveTimer()->isActive());
    QCOMPARE(noReplyCounter.loadRelaxed(), 1);
}

void tst_mainbackend::watchdog_everyTick_emitsChannel()
{
    QSignalSpy lamp(m_backEnd.get(), &mainBackEnd::chanelLED);
    m_probe->tickWatchdog();
    m_backEnd->showTheCloudChanel(QStringLiteral("1"));
    m_probe->tickWatchdog();
    QCOMPARE(lamp, (QList<QVariantList>{{false}, {true}}));
}

void tst_mainbackend::minuteMark_onlyAtSecondZero_data()
{
    QTest::addColumn<QTime>("time");
    QTest::addColumn<bool>("marked");
    QTest::newRow("second 0") << QTime(9, 5, 0, 0) << true;
    QTest::newRow("end of second 0") << QTime(9, 5, 0, 999) << true;
    QTest::newRow("second 1") << QTime(9, 5, 1, 0) << false;
    QTest::newRow("second 59") << QTime(9, 5, 59, 999) << false;
    QTest::newRow("midnight") << QTime(0, 0, 0, 500) << true;
}

void tst_mainbackend::minuteMark_onlyAtSecondZero()
{
    QFETCH(QTime, time);
    QFETCH(bool, marked);
    m_probe->setClock(fakeNow);
    g_now.setTime(time);
    QSignalSpy marks(m_backEnd.get(), &mainBackEnd::timeToData);
    m_probe->tickSave();
    QList<QVariantList> expected;
    if (marked) {
        expected << QVariantList{
            QStringLiteral("2026/11/15"), time.toString(QStringLiteral("hh:mm:ss"))};
    }
    QCOMPARE(marks, expected);
}

void tst_mainbackend::minuteMark_from59To1_isMissed()
{
    m_probe->setClock(fakeNow);
    QSignalSpy marks(m_backEnd.get(), &mainBackEnd::timeToData);
    g_now.setTime(QTime(9, 4, 59, 998));
    m_probe->tickSave();
    g_now.setTime(QTime(9, 5, 1, 1));
    m_probe->tickSave();
    QCOMPARE(marks.count(), 0);
}

void tst_mainbackend::saveTick_driftingPhase_marksEachMinuteOnce()
{
    // 48 hours with a clock that runs 200 ppm slow, and ticks up to 40 ms late: ticks with a fixed
    // interval would repeatedly cross a second boundary.
    m_probe->setClock(fakeNow);
    QSignalSpy marks(m_backEnd.get(), &mainBackEnd::timeToData);
    constexpr int kHours = 48;
    const QDateTime start(QDate(2026, 11, 15), QTime(0, 0, 0, 990));
    double clockMs = 0;
    quint32 noise = 1;
    m_probe->saveTimer()->start();
    while (clockMs < kHours * 3600.0 * 1000.0) {
        noise = noise * 1664525U + 1013904223U;
        const double lateMs = (noise >> 16U) % 40U;
        g_now = start.addMSecs(static_cast<qint64>(clockMs + lateMs));
        m_probe->tickSave();
        clockMs += m_probe->saveTimer()->interval() * (1.0 - 200e-6);
    }
    m_probe->saveTimer()->stop();
    QCOMPARE(marks.count(), kHours * 60);
    QSet<QString> minutes;
    for (const QVariantList &mark : marks) {
        minutes << mark.at(0).toString() + mark.at(1).toString();
    }
    QCOMPARE(minutes.size(), kHours * 60);
}

void tst_mainbackend::saveTick_handledLate_marksTheMinuteOnce()
{
    static QElapsedTimer clock;
    static const QDateTime start(QDate(2026, 11, 15), QTime(12, 33, 58, 500));
    m_probe->setClock([] { return start.addMSecs(clock.elapsed()); });
    QSignalSpy marks(m_backEnd.get(), &mainBackEnd::timeToData);
    clock.start();
    m_probe->saveTimer()->start();
    // Due in the middle of second 59, handled in the middle of second 0.
    QThread::msleep(1850);
    QVERIFY(QTest::qWaitFor([] { return clock.elapsed() > 2700; }));
    m_probe->saveTimer()->stop();
    QCOMPARE(marks.count(), 1);
}

void tst_mainbackend::saveTick_afterStopOrLoss_startsWithDefaultInterval()
{
    m_probe->setClock([] { return QDateTime(QDate(2026, 11, 15), QTime(12, 33, 58, 20)); });
    m_backEnd->enButton();
    m_probe->tickSave();
    QCOMPARE(m_probe->saveTimer()->interval(), 1280); // moves to the target position
    m_backEnd->disableButton();
    m_backEnd->enButton();
    QCOMPARE(m_probe->saveTimer()->interval(), 1000);

    m_probe->tickSave();
    noReplyCounter.storeRelaxed(ork2::kLostAfterSeconds);
    m_probe->tickWatchdog();
    QVERIFY(!m_probe->saveTimer()->isActive());
    noReplyCounter.storeRelaxed(0);
    m_probe->tickWatchdog();
    QVERIFY(m_probe->saveTimer()->isActive());
    QCOMPARE(m_probe->saveTimer()->interval(), 1000);
}

void tst_mainbackend::saveTick_halfASecondLate_marksEachMinute()
{
    // For an hour, all ticks are 2 ms late, those at the full minute 480 ms.
    m_probe->setClock(fakeNow);
    QSignalSpy marks(m_backEnd.get(), &mainBackEnd::timeToData);
    const QDateTime start(QDate(2026, 11, 15), QTime(11, 59, 1, 990));
    const QDateTime end = start.addSecs(3600);
    QDateTime due = start;
    m_probe->saveTimer()->start();
    while (due < end) {
        g_now = due.addMSecs(due.time().second() == 0 ? 480 : 2);
        m_probe->tickSave();
        due = g_now.addMSecs(m_probe->saveTimer()->interval());
    }
    m_probe->saveTimer()->stop();
    QCOMPARE(marks.count(), 60);
}

void tst_mainbackend::plotTick_emitsBothValuesThenMovesAxes()
{
    m_probe->setClock(fakeNow);
    m_backEnd->showTheCloud(QStringLiteral("0120"), QStringLiteral("3500"));
    Recorder recorder(*m_backEnd);
    m_probe->tickPlot();
    const QString now = QVariant(static_cast<double>(g_now.toMSecsSinceEpoch())).toString();
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("dropFCloud %1 120").arg(now),
            QStringLiteral("dropSCloud %1 3500").arg(now), QStringLiteral("updateVoidGraph")}));
}

void tst_mainbackend::reading_classification_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("errorSignal");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<double>("firstValue");
    QTest::addColumn<double>("secondValue");
    QTest::addColumn<int>("cloudError"); // -1: unchanged
    const auto row = [](const char *name, const char *first, const char *second, const char *signal,
                         const char *shown, double firstValue, double secondValue, int cloudError) {
        QTest::newRow(name) << QString::fromLatin1(first) << QString::fromLatin1(second)
                            << QString::fromLatin1(signal) << QString::fromLatin1(shown)
                            << firstValue << secondValue << cloudError;
    };
    row("both measured", "0120", "0240", "noError", "0120 0240", 120, 240, 0);
    row("no value", "5000", "5000", "noError", "5000 5000", 5000, 5000, 0);
    row("zero keeps its text", "0", "0", "noError", "0 0", 5000, 5000, 0);
    row("text that is not a number is zero", "1x34", "0240", "noError", "1x34 0240", 5000, 240, 0);
    row("not a number", "nan", "0240", "noError", "nan 0240", 5000, 240, 0);
    row("infinity", "-inf", "inf", "noError", "-inf inf", 5000, 5000, 0);
    row("no flash", "7777", "7777", "noFlashError", "---- ----", 7777, 7777, 1);
    row("data error", "9999", "9999", "noDataError", "---- ----", 9999, 9999, 1);
    row("not ready has no signal", "8888", "8888", "", "---- ----", 8888, 8888, 1);
    row("7777 and a height", "7777", "1200", "", "7777 1200", 7777, 1200, -1);
    row("9999 and a height", "9999", "1200", "", "9999 1200", 9999, 1200, -1);
    row("8888 and a height", "8888", "1200", "", "8888 1200", 8888, 1200, -1);
    row("a height and 7777", "1200", "7777", "", "1200 7777", 1200, 7777, -1);
    row("7777 and 9999", "7777", "9999", "", "7777 9999", 7777, 9999, -1);
    row("just above the range", "5001", "0100", "", "5001 0100", 5001, 100, -1);
}

void tst_mainbackend::reading_classification()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, errorSignal);
    QFETCH(QString, shown);
    QFETCH(double, firstValue);
    QFETCH(double, secondValue);
    QFETCH(int, cloudError);
    for (const bool errorBefore : {false, true}) {
        const QString code = QStringLiteral("9999");
        const QString height = QStringLiteral("100");
        m_backEnd->showTheCloud(errorBefore ? code : height, errorBefore ? code : height);
        QCOMPARE(m_probe->cloudError(), errorBefore);
        Recorder recorder(*m_backEnd);
        m_backEnd->showTheCloud(first, second);
        QStringList expected;
        if (!errorSignal.isEmpty()) {
            expected << errorSignal;
        }
        expected << QStringLiteral("firstCloudAlt ") + shown.section(u' ', 0, 0)
                 << QStringLiteral("secondCloudAlt ") + shown.section(u' ', 1, 1);
        QCOMPARE(recorder.take(), expected);
        QCOMPARE(m_probe->firstValue(), firstValue);
        QCOMPARE(m_probe->secondValue(), secondValue);
        QCOMPARE(m_probe->cloudError(), cloudError < 0 ? errorBefore : cloudError != 0);
    }
}

void tst_mainbackend::channel_onlyZeroAndOneCount()
{
    const QList<std::pair<QString, int>> rows{{QStringLiteral("1"), 1}, {QStringLiteral("2"), 1},
        {QString(), 1}, {QStringLiteral("01"), 1}, {QStringLiteral("0"), 0},
        {QStringLiteral("2"), 0}, {QStringLiteral(" 1"), 0}};
    for (const auto &[text, state] : rows) {
        m_backEnd->showTheCloudChanel(text);
        QCOMPARE(m_probe->channel(), state);
    }
}

void tst_mainbackend::workerLamp_false_closesPort()
{
    m_backEnd->enButton();
    Recorder recorder(*m_backEnd);
    m_backEnd->connectionLed(true);
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("connectionLED true")});
    m_backEnd->connectionLed(false);
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("connectionLED false"), QStringLiteral("stopButtonClicked"),
            QStringLiteral("sendCounter  Статус: Прибор отключен")}));
    QVERIFY(m_probe->requestTimer()->isActive());
    QVERIFY(m_backEnd->enabledButton());
}

void tst_mainbackend::lamps_areForwarded()
{
    Recorder recorder(*m_backEnd);
    m_backEnd->severLed(true);
    m_backEnd->severLed(false);
    m_backEnd->dataLed(true);
    m_backEnd->dataLed(false);
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("serverLED true"), QStringLiteral("serverLED false"),
            QStringLiteral("dataLED true"), QStringLiteral("dataLED false")}));
}

void tst_mainbackend::message_whileStopped_showsStoppedTextLater()
{
    m_probe->setClock(fakeNow);
    const qsizetype timersBefore = m_backEnd->findChildren<QTimer *>().size();
    QSignalSpy texts(m_backEnd.get(), &mainBackEnd::sendCounter);
    m_probe->message(QStringLiteral("COM3 >> Закрыт!\r"));
    m_probe->message(QStringLiteral("второе"));
    QCOMPARE(texts,
        (QList<QVariantList>{{QStringLiteral("[12:34:56.500]:\tCOM3 >> Закрыт!\r")},
            {QStringLiteral("[12:34:56.500]:\tвторое")}}));
    QVERIFY(m_log->lines().contains(QStringLiteral("cpp: Msg:  \"второе\"")));
    texts.clear();
    QTRY_COMPARE(texts.count(), 2);
    QCOMPARE(texts,
        (QList<QVariantList>{{QStringLiteral(" Статус: Прибор остановлен")},
            {QStringLiteral(" Статус: Прибор остановлен")}}));
    const auto timers = m_backEnd->findChildren<QTimer *>();
    QCOMPARE(timers.size(), timersBefore + 2);
    QVERIFY(timers.last()->isSingleShot());
    QCOMPARE(timers.last()->interval(), 1000);
}

void tst_mainbackend::message_whileMeasuring_createsNoTimer()
{
    m_backEnd->enButton();
    const qsizetype timersBefore = m_backEnd->findChildren<QTimer *>().size();
    m_probe->message(QStringLiteral("x"));
    QCOMPARE(m_backEnd->findChildren<QTimer *>().size(), timersBefore);
}

void tst_mainbackend::controlPanel_isRequestedAfterDelay()
{
    QSignalSpy requests(m_backEnd.get(), &mainBackEnd::openControlPanel);
    m_backEnd->openCP();
    QCOMPARE(requests.count(), 0);
    QCOMPARE(m_backEnd->findChildren<QTimer *>().last()->interval(), 100);
    QTRY_COMPARE(requests.count(), 1);
}

void tst_mainbackend::portSearch_selectsTheOnlyAdapter_data()
{
    using Ports = QList<ork2::PresentPort>;
    const QString one = QStringLiteral("ttyUSB3");
    const QString other = QStringLiteral("ttyUSB5");
    QTest::addColumn<Ports>("ports");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QString>("name");
    QTest::newRow("none, nothing stored") << Ports() << QString() << false << "COM3";
    QTest::newRow("none, one stored") << Ports() << "ttyS7" << false << "ttyS7";
    QTest::newRow("one") << Ports{{one, 0x6001}} << "ttyS7" << true << one;
    QTest::newRow("lowest bit in common") << Ports{{one, 0x0001}} << "ttyS7" << true << one;
    QTest::newRow("higher bits in common") << Ports{{one, 0x6000}} << "ttyS7" << true << one;
    QTest::newRow("no bit in common") << Ports{{one, 0x1FFE}} << "ttyS7" << false << "ttyS7";
    QTest::newRow("one among ports without")
        << Ports{{QStringLiteral("ttyS0"), 0}, {one, 0x2303}, {QStringLiteral("ttyS1"), 0}}
        << "ttyS7" << true << one;
    QTest::newRow("two") << Ports{{one, 0x6001}, {other, 0x6001}} << "ttyS7" << false << "ttyS7";
}

void tst_mainbackend::portSearch_selectsTheOnlyAdapter()
{
    using Ports = QList<ork2::PresentPort>;
    QFETCH(const Ports, ports);
    QFETCH(const QString, stored);
    QFETCH(const bool, found);
    QFETCH(const QString, name);
    if (!stored.isEmpty()) {
        profile::store(ork2::kPortToOpen, stored);
    }
    m_probe->setPorts(ports);
    QSignalSpy emitted(m_backEnd.get(), &mainBackEnd::plugPlayComSettings);
    QCOMPARE(m_probe->searchPort(), found);
    QCOMPARE(emitted, (QList<QVariantList>{{9600, 0, name}}));
}

void tst_mainbackend::portName_saved_isStoredWithoutSignal()
{
    Recorder recorder(*m_backEnd);
    m_backEnd->saveComPortNumber(QStringLiteral("ttyUSB4"));
    QCOMPARE(currentPortName, QStringLiteral("ttyUSB4"));
    QCOMPARE(profile::stored(ork2::kPortToShow), QVariant(QStringLiteral("ttyUSB4")));
    QCOMPARE(recorder.take(), QStringList());
}

void tst_mainbackend::portName_updated_isReadAndEmitted()
{
    profile::store(ork2::kPortToShow, QStringLiteral("COM12"));
    Recorder recorder(*m_backEnd);
    m_backEnd->updateComPortNumber();
    QCOMPARE(currentPortName, QStringLiteral("COM12"));
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("sendActualPortNumber COM12")});
}

void tst_mainbackend::unit_saved_isStoredAndEmitted()
{
    Recorder recorder(*m_backEnd);
    m_backEnd->saveUnitYearNumber(QStringLiteral("17"), QStringLiteral("2021"));
    QCOMPARE(profile::stored(ork2::kUnitNumber), QVariant(QStringLiteral("17")));
    QCOMPARE(profile::stored(ork2::kUnitYear), QVariant(QStringLiteral("2021")));
    m_backEnd->showUnitYearNumber();
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("sendUnitYearNumber 17 2021"),
            QStringLiteral("sendUnitYearNumber 17 2021")}));
}

void tst_mainbackend::unit_emptyText_isKept()
{
    m_backEnd->saveUnitYearNumber(QString(QLatin1String("")), QStringLiteral("x"));
    QCOMPARE(profile::stored(ork2::kUnitNumber), QVariant(QString(QLatin1String(""))));
}

void tst_mainbackend::dataFolder_isOpened_data()
{
    QTest::addColumn<QString>("namePath");
    QTest::addColumn<QString>("folder");
    const QString programFolder = QCoreApplication::applicationDirPath() + QStringLiteral("/Data");
    QTest::newRow("nothing stored") << QString() << programFolder;
    QTest::newRow("mark") << QStringLiteral("!") << programFolder;
    QTest::newRow("a folder") << QStringLiteral("/srv/Meteo/")
                              << QStringLiteral("/srv/Meteo/ORK2/Data");
    QTest::newRow("without separator")
        << QStringLiteral("/srv/M") << QStringLiteral("/srv/MORK2/Data");
    QTest::newRow("mark and more") << QStringLiteral("!x") << programFolder;
    QTest::newRow("relative") << QStringLiteral(
        "meteo/") << QDir::current().absoluteFilePath(QStringLiteral("meteo/ORK2/Data"));
}

void tst_mainbackend::dataFolder_isOpened()
{
    QFETCH(QString, namePath);
    QFETCH(QString, folder);
    if (!namePath.isNull()) {
        profile::store(ork2::kNamePath, namePath);
    }
    QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "openedFolder");
    m_backEnd->on_action_openDataFolder_triggered();
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    QCOMPARE(m_opened, QUrl::fromLocalFile(folder));
}

void tst_mainbackend::timeWindow_followsRange()
{
    m_probe->setClock(fakeNow);
    for (const int seconds : {600, 3600, 10800}) {
        m_backEnd->setXMinRange(seconds);
        QCOMPARE(m_backEnd->minTime(), g_now.addSecs(-seconds));
        QCOMPARE(m_backEnd->maxTime(), g_now);
    }
}

void tst_mainbackend::range_cycles_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<QString>("name");
    const QString stem = QStringLiteral("Высота нижней границы облачности ");
    QTest::newRow("10 minutes") << 600 << 3600 << stem + QStringLiteral("(1 час)");
    QTest::newRow("1 hour") << 3600 << 10800 << stem + QStringLiteral("(3 часа)");
    QTest::newRow("3 hours") << 10800 << 600 << stem + QStringLiteral("(10 минут)");
    QTest::newRow("anything else") << 700 << 700 << QString();
}

void tst_mainbackend::range_cycles()
{
    QFETCH(int, before);
    QFETCH(int, after);
    QFETCH(QString, name);
    m_backEnd->setXMinRange(before);
    m_backEnd->setChartName(QStringLiteral("x"));
    Recorder recorder(*m_backEnd);
    m_backEnd->changeRangeX();
    QCOMPARE(m_backEnd->xMinRange(), after);
    if (name.isEmpty()) {
        QCOMPARE(recorder.take(), QStringList());
    } else {
        QCOMPARE(m_backEnd->chartName(), name);
        QCOMPARE(recorder.take(),
            QStringList({QStringLiteral("xMinRangeChanged"), QStringLiteral("chartNameChanged"),
                QStringLiteral("updateVoidGraph")}));
    }
}

void tst_mainbackend::properties_unchangedValue_isSilent()
{
    Recorder recorder(*m_backEnd);
    m_backEnd->setXMinRange(600);
    m_backEnd->setEnabledButton(false);
    m_backEnd->setChartName(m_backEnd->chartName());
    QCOMPARE(recorder.take(), QStringList());
    m_backEnd->setXMinRange(1);
    m_backEnd->setEnabledButton(true);
    m_backEnd->setChartName(QStringLiteral("x"));
    QCOMPARE(recorder.take(),
        QStringList({QStringLiteral("xMinRangeChanged"), QStringLiteral("enabledButtonChanged"),
            QStringLiteral("chartNameChanged")}));
}

void tst_mainbackend::axes_setAndRead_data()
{
    QTest::addColumn<bool>("logarithmic");
    QTest::newRow("logarithmic") << true;
    QTest::newRow("linear") << false;
}

void tst_mainbackend::axes_setAndRead()
{
    QFETCH(bool, logarithmic);
    QLogValueAxis logAxis;
    QValueAxis lineAxis;
    Recorder recorder(*m_backEnd);
    const auto set = [&](bool null) {
        if (logarithmic) {
            m_backEnd->setLogAxisY(null ? nullptr : &logAxis);
        } else {
            m_backEnd->setlineAxisY(null ? nullptr : &lineAxis);
        }
    };
    const auto stored = [&]() -> const QObject * {
        return logarithmic ? static_cast<QObject *>(m_backEnd->logAxisY()) : m_backEnd->lineAxisY();
    };
    const QObject *axis = logarithmic ? static_cast<QObject *>(&logAxis) : &lineAxis;
    const QString changed =
        logarithmic ? QStringLiteral("logAxisYChanged") : QStringLiteral("lineAxisYChanged");
    const auto logged = [&](const char *text) {
        return m_log->lines().filter(QString::fromLatin1(text)).size();
    };

    set(true);
    QCOMPARE(stored(), nullptr);
    QCOMPARE(recorder.take(), QStringList());
    QCOMPARE(logged(logarithmic ? "newLogAxisY == NULL" : "newLineAxisY == NULL"), 1);
    set(false);
    QCOMPARE(stored(), axis);
    QCOMPARE(recorder.take(), QStringList{changed});
    QCOMPARE(logged(logarithmic ? "setLogAx" : "setLineAx"), 1);
    set(false);
    set(true);
    QCOMPARE(stored(), axis);
    QCOMPARE(recorder.take(), QStringList());
    QVERIFY(logged(logarithmic ? "readLogAx" : "readLineAx") >= 3);

    m_probe->endWorker();
    m_backEnd.reset(); // requests the deletion of objects on this stack, which must not happen
    QCoreApplication::removePostedEvents(&logAxis, QEvent::DeferredDelete);
    QCoreApplication::removePostedEvents(&lineAxis, QEvent::DeferredDelete);
}

void tst_mainbackend::axes_ownerDestroyed_noDanglingPointer()
{
    auto *axis = new QValueAxis;
    m_backEnd->setlineAxisY(axis);
    delete axis;
    QCOMPARE(m_backEnd->lineAxisY(), nullptr);
}

void tst_mainbackend::axes_destruction_deletesThemLater()
{
    const QPointer<QValueAxis> lineAxis = new QValueAxis;
    const QPointer<QLogValueAxis> logAxis = new QLogValueAxis;
    m_backEnd->setlineAxisY(lineAxis);
    m_backEnd->setLogAxisY(logAxis);
    m_probe->endWorker();
    m_backEnd.reset();
    QVERIFY(!lineAxis.isNull());
    QVERIFY(!logAxis.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(lineAxis.isNull());
    QVERIFY(logAxis.isNull());
}

void tst_mainbackend::thinning_isForwardedToTheDocument()
{
    Recorder recorder(*m_backEnd);
    m_backEnd->removeGPoints();
    QCOMPARE(recorder.take(), QStringList{QStringLiteral("clearGraphData")});
}

QTEST_MAIN(tst_mainbackend)
#include "tst_mainbackend.moc"
