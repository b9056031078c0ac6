// SPDX-License-Identifier: GPL-3.0-or-later
// Tests each connection made at the start and by the controller's constructor: emits the signal and
// checks the effect on the receiver.
#include "startup.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "sharedvalues.h"
#include "timeout.h"
#include "uidata.h"

#include <QApplication>
#include <QLabel>
#include <QQmlApplicationEngine>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

using namespace std::chrono_literals;

class tst_wiring : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void points_reachTheirSeries();
    void updateMyTime_reachesBothSlots();
    void fullSeries_asksForThinning();
    void document_decidesTheExit_data();
    void document_decidesTheExit();
    void timers_tickTheirSlots();
    void finishedPort_endsThreadAndWorker();
    void workerTexts_reachTheStatusLine();
    void threadStart_runsTheWorkersEntry();
    void startAndStop_commandThePort();
    void searchedPort_configuresThePort();
    void frame_reachesTheParser();
    void workerLamp_reachesTheController();
    void dataLamp_reachesTheController();
    void reading_reachesControllerBeforeFileWriter();
    void onTheirWayAtStop_areNotShown();
    void fakeReading_isShown();
    void timeMark_writesTheLine();
    void channel_reachesFileWriterBeforeController();
    void connections_areInDeclaredOrder();

    void splash_percentage_climbsTo99AtMost();
    void splash_showsTheVersion();

private:
    [[nodiscard]] QByteArray dayFile() const;
    [[nodiscard]] QStringList receivers(QObject *sender, const QString &signal) const;

    QScopedPointer<LogCapture> m_log;
    QScopedPointer<QTemporaryDir> m_base;
    QScopedPointer<mainBackEnd> m_backEnd;
    QScopedPointer<MainBackEndProbe> m_probe;
};

void tst_wiring::init()
{
    profile::clear();
    m_base.reset(new QTemporaryDir);
    profile::store(ork2::kNamePath, m_base->path());
    m_log.reset(new LogCapture);
    m_backEnd.reset(new mainBackEnd);
    m_probe.reset(new MainBackEndProbe(*m_backEnd));
    noReplyCounter.storeRelaxed(0);
}

void tst_wiring::cleanup()
{
    if (m_probe) {
        m_probe->endWorker();
    }
    m_probe.reset();
    m_backEnd.reset();
    // A misspelt signature is only reported here.
    const QStringList misses =
        m_log->lines().filter(QRegularExpression(QStringLiteral("No such (slot|signal)")));
    m_log.reset();
    QCOMPARE(misses, QStringList());
}

QByteArray tst_wiring::dayFile() const
{
    QFile file(m_base->filePath(QStringLiteral("Data/ORK-2 N1/2026.11.15.txt")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Returns the class and slot of each receiver of a signal, in the order of delivery.
QStringList tst_wiring::receivers(QObject *sender, const QString &signal) const
{
    const qsizetype before = m_log->lines().size();
    sender->dumpObjectInfo();
    QStringList result;
    bool within = false;
    const QStringList lines = m_log->lines().mid(before);
    for (const QString &line : lines) {
        if (line.contains(QLatin1String("signal: "))) {
            within = line.contains(QStringLiteral("signal: ") + signal);
        } else if (within
            && line.contains(QLatin1String("-->"))) { // not a line logged by the worker
            result << line.section(QStringLiteral("--> "), 1).simplified();
        }
    }
    return result;
}

void tst_wiring::points_reachTheirSeries()
{
    UiData first;
    UiData second;
    QScatterSeries firstSeries;
    QScatterSeries secondSeries;
    first.setXy(&firstSeries);
    second.setXy(&secondSeries);
    ork2::connectCharts(*m_backEnd, first, second);
    Q_EMIT m_backEnd->dropFCloud(1, 100);
    QCOMPARE(firstSeries.points(), QList<QPointF>({{1, 100}}));
    QCOMPARE(secondSeries.count(), 0);
    Q_EMIT m_backEnd->dropSCloud(2, 200);
    QCOMPARE(secondSeries.points(), QList<QPointF>({{2, 200}}));
    QCOMPARE(firstSeries.count(), 1);
}

void tst_wiring::updateMyTime_reachesBothSlots()
{
    UiData first;
    UiData second;
    ork2::connectCharts(*m_backEnd, first, second);
    static int calls = 0;
    calls = 0;
    m_probe->setClock([] {
        ++calls;
        return QDateTime::currentDateTime();
    });
    Q_EMIT m_backEnd->updateMyTime();
    QCOMPARE(calls, 2);
    QCOMPARE(receivers(m_backEnd.get(), QStringLiteral("updateMyTime")).size(), 2);
}

void tst_wiring::fullSeries_asksForThinning()
{
    UiData first;
    UiData second;
    ork2::connectCharts(*m_backEnd, first, second);
    QSignalSpy thinning(m_backEnd.get(), &mainBackEnd::clearGraphData);
    Q_EMIT first.removeGPoints();
    QCOMPARE(thinning.count(), 1);
    Q_EMIT second.removeGPoints();
    QCOMPARE(thinning.count(), 2);
}

void tst_wiring::document_decidesTheExit_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<bool>("other"); // another document than the one that causes the exit
    const QByteArray broken("import QtQuick\nQtObject { no }");
    QTest::newRow("broken") << broken << -1 << false;
    QTest::newRow("valid") << QByteArray("import QtQuick\nQtObject { }") << 0 << false;
    QTest::newRow("another one broken") << broken << 0 << true;
}

void tst_wiring::document_decidesTheExit()
{
    QFETCH(QByteArray, text);
    QFETCH(int, exitCode);
    QFETCH(const bool, other);
    QFile file(m_base->filePath(QStringLiteral("document.qml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    const QUrl document = QUrl::fromLocalFile(file.fileName());
    QQmlApplicationEngine engine;
    ork2::exitWithoutDocument(engine, *QCoreApplication::instance(),
        other ? QUrl(QStringLiteral("qrc:/main")) : document);
    engine.load(document);
    QTimer end; // if the handler did not exit the event loop
    connect(&end, &QTimer::timeout, [] { QCoreApplication::exit(0); });
    end.start(100ms);
    QCOMPARE(QCoreApplication::exec(), exitCode);
}

void tst_wiring::timers_tickTheirSlots()
{
    static QDateTime now;
    now = QDateTime(QDate(2026, 11, 15), QTime(12, 34, 0, 500));
    m_probe->setClock([] { return now; });
    QSignalSpy watchdog(m_backEnd.get(), &mainBackEnd::chanelLED);
    QSignalSpy plot(m_backEnd.get(), &mainBackEnd::updateVoidGraph);
    QSignalSpy save(m_backEnd.get(), &mainBackEnd::timeToData);
    m_probe->requestTimer()->start(1ms);
    QVERIFY(watchdog.wait(kTimeoutMs));
    m_probe->requestTimer()->stop();
    QCOMPARE(plot.count() + save.count(), 0);
    m_probe->plotTimer()->start(1ms);
    QVERIFY(plot.wait(kTimeoutMs));
    m_probe->plotTimer()->stop();
    QCOMPARE(save.count(), 0);
    m_probe->saveTimer()->start(1ms);
    QVERIFY(save.wait(kTimeoutMs));
}

void tst_wiring::finishedPort_endsThreadAndWorker()
{
    const QPointer<ComPort> port = m_probe->comPort();
    const QPointer<QThread> thread = m_probe->workerThread();
    delete m_probe->parser();
    delete m_probe->fileWriter();
    m_probe.reset();
    Q_EMIT port->finished_Port();
    QVERIFY(thread->wait());
    QTRY_VERIFY(port.isNull());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTRY_VERIFY(thread.isNull());
}

void tst_wiring::workerTexts_reachTheStatusLine()
{
    QSignalSpy texts(m_backEnd.get(), &mainBackEnd::sendCounter);
    ComPort *port = m_probe->comPort();
    Q_EMIT port->error_(QStringLiteral("one"));
    Q_EMIT port->outPort(QStringLiteral("two"));
    Q_EMIT port->statusBarMsg(QStringLiteral("three"));
    QTRY_COMPARE(texts.count(), 3);
    QVERIFY(texts.at(0).first().toString().endsWith(QLatin1String("]:\tone")));
    QVERIFY(texts.at(1).first().toString().endsWith(QLatin1String("]:\ttwo")));
    QVERIFY(texts.at(2).first().toString().endsWith(QLatin1String("]:\tthree")));
}

void tst_wiring::threadStart_runsTheWorkersEntry()
{
    QTRY_COMPARE(m_log->lines().count(QStringLiteral("Com port in separate Thread!")), 1);
}

void tst_wiring::startAndStop_commandThePort()
{
    QSignalSpy texts(m_backEnd.get(), &mainBackEnd::sendCounter);
    Q_EMIT m_backEnd->savesettings(QStringLiteral("/nowhere/port"), 9600, 8, 0, 1, 0);
    Q_EMIT m_backEnd->startButtonClicked();
    QTRY_COMPARE(texts.count(), 1); // the failure to open the port
    QCOMPARE(m_probe->comPort()->port().portName(), QStringLiteral("/nowhere/port"));
    QCOMPARE(receivers(m_backEnd.get(), QStringLiteral("stopButtonClicked")).size(), 1);
    QVERIFY(receivers(m_backEnd.get(), QStringLiteral("stopButtonClicked"))
                .first()
                .contains(QLatin1String("ComPort")));
}

void tst_wiring::searchedPort_configuresThePort()
{
    Q_EMIT m_backEnd->plugPlayComSettings(19200, 2, QStringLiteral("/nowhere/searched"));
    QTRY_COMPARE(m_probe->comPort()->port().portName(), QStringLiteral("/nowhere/searched"));
    QCOMPARE(m_probe->comPort()->port().baudRate(), 19200);
    QCOMPARE(m_probe->comPort()->port().parity(), QSerialPort::NoParity);
}

void tst_wiring::frame_reachesTheParser()
{
    QSignalSpy heights(m_probe->parser(), &convertData::readyToShowClouds);
    Q_EMIT m_probe->comPort()->readyToShowClouds(QByteArrayLiteral("H012340240\r"));
    QTRY_COMPARE(heights, (QList<QVariantList>{{QStringLiteral("1234"), QStringLiteral("0240")}}));
}

void tst_wiring::workerLamp_reachesTheController()
{
    m_backEnd->enButton();
    QSignalSpy lamp(m_backEnd.get(), &mainBackEnd::connectionLED);
    Q_EMIT m_probe->comPort()->connectLED(true);
    QTRY_COMPARE(lamp, (QList<QVariantList>{{true}}));
}

void tst_wiring::dataLamp_reachesTheController()
{
    QSignalSpy lamp(m_backEnd.get(), &mainBackEnd::dataLED);
    Q_EMIT m_probe->fileWriter()->dataLedStatus(true);
    QCOMPARE(lamp, (QList<QVariantList>{{true}}));
}

void tst_wiring::reading_reachesControllerBeforeFileWriter()
{
    m_backEnd->enButton();
    // A line written while the controller shows a reading still contains the previous reading.
    m_probe->fileWriter()->DataCloudRecieved(QStringLiteral("0001"), QStringLiteral("0002"));
    connect(m_backEnd.get(), &mainBackEnd::firstCloudAlt, this, [this] {
        m_probe->fileWriter()->DateTimeRecieve(
            QStringLiteral("2026/11/15"), QStringLiteral("12:34:00"));
    });
    Q_EMIT m_probe->parser()->readyToShowClouds(QStringLiteral("0100"), QStringLiteral("0200"));
    QVERIFY(dayFile().endsWith("\r\n12:34:00\t0001\t0002\tОсновной"));
    QCOMPARE(m_probe->firstValue(), 100.0);
    m_probe->fileWriter()->DateTimeRecieve(
        QStringLiteral("2026/11/15"), QStringLiteral("12:35:00"));
    QVERIFY(dayFile().endsWith("\r\n12:35:00\t0100\t0200\tОсновной"));
}

void tst_wiring::onTheirWayAtStop_areNotShown()
{
    m_backEnd->enButton();
    m_backEnd->disableButton();
    QSignalSpy heights(m_backEnd.get(), &mainBackEnd::firstCloudAlt);
    QSignalSpy lamp(m_backEnd.get(), &mainBackEnd::connectionLED);
    Q_EMIT m_probe->parser()->readyToShowClouds(QStringLiteral("0100"), QStringLiteral("0200"));
    Q_EMIT m_probe->comPort()->connectLED(true);
    QCOMPARE(heights.count(), 0);
    QCOMPARE(lamp.count(), 0);
    QCOMPARE(m_probe->firstValue(), 5000.0);
    QCOMPARE(m_probe->secondValue(), 5000.0);
}

void tst_wiring::fakeReading_isShown()
{
    QSignalSpy shown(m_backEnd.get(), &mainBackEnd::firstCloudAlt);
    Q_EMIT m_backEnd->connectionErrorClouds(QStringLiteral("5000"), QStringLiteral("5000"));
    QCOMPARE(shown, (QList<QVariantList>{{QStringLiteral("5000")}}));
}

void tst_wiring::timeMark_writesTheLine()
{
    Q_EMIT m_backEnd->timeToData(QStringLiteral("2026/11/15"), QStringLiteral("12:34:00"));
    QVERIFY(dayFile().endsWith("\r\n12:34:00\t\t\tОсновной"));
}

void tst_wiring::channel_reachesFileWriterBeforeController()
{
    Q_EMIT m_probe->parser()->readyToShowCloudChanel(QStringLiteral("1"));
    QCOMPARE(m_probe->channel(), 1);
    Q_EMIT m_backEnd->timeToData(QStringLiteral("2026/11/15"), QStringLiteral("12:34:00"));
    QVERIFY(dayFile().endsWith("\tРезерв"));
    const QStringList order =
        receivers(m_probe->parser(), QStringLiteral("readyToShowCloudChanel"));
    QCOMPARE(order.size(), 2);
    QVERIFY(order.at(0).contains(QLatin1String("datalogger")));
    QVERIFY(order.at(1).contains(QLatin1String("mainBackEnd")));
}

void tst_wiring::connections_areInDeclaredOrder()
{
    struct Row
    {
        QObject *sender;
        const char *signal;
        QStringList receivers; // class of each, in the order of delivery
    };
    const auto names = [](const char *text) { return QString::fromLatin1(text).split(u' '); };
    const QList<Row> rows{
        {m_probe->workerThread(), "started", names("ComPort")},
        {m_probe->workerThread(), "finished", names("QThread ComPort")},
        {m_probe->comPort(), "finished_Port", names("QThread QThread")},
        {m_probe->comPort(), "error_", names("mainBackEnd")},
        {m_probe->comPort(), "outPort", names("mainBackEnd")},
        {m_probe->comPort(), "statusBarMsg", names("mainBackEnd")},
        {m_probe->comPort(), "readyToShowClouds", names("convertData")},
        {m_probe->comPort(), "connectLED", names("mainBackEnd")},
        {m_backEnd.get(), "savesettings", names("ComPort")},
        {m_backEnd.get(), "plugPlayComSettings", names("ComPort")},
        {m_backEnd.get(), "startButtonClicked", names("ComPort")},
        {m_backEnd.get(), "stopButtonClicked", names("ComPort")},
        {m_backEnd.get(), "connectionErrorClouds", names("mainBackEnd")},
        {m_backEnd.get(), "timeToData", names("datalogger")},
        {m_probe->fileWriter(), "dataLedStatus", names("mainBackEnd")},
        {m_probe->parser(), "readyToShowClouds", names("mainBackEnd datalogger")},
        {m_probe->parser(), "readyToShowCloudChanel", names("datalogger mainBackEnd")},
    };
    for (const Row &row : rows) {
        QStringList classes;
        const QStringList found = receivers(row.sender, QString::fromLatin1(row.signal));
        for (const QString &receiver : found) {
            classes << receiver.section(QStringLiteral("::"), 0, 0);
        }
        QVERIFY2(classes == row.receivers,
            qPrintable(QString::fromLatin1(row.signal) + u' ' + found.join(u'|')));
    }
}

void tst_wiring::splash_percentage_climbsTo99AtMost()
{
    ork2::Splash splash;
    QElapsedTimer clock;
    clock.start();
    QStringList messages;
    QList<qint64> times;
    bool shown = true;
    connect(&splash.screen(), &QSplashScreen::messageChanged, this, [&](const QString &text) {
        messages << text;
        times << clock.elapsed();
        shown = shown && splash.screen().isVisible();
    });
    splash.countUp();
    const qint64 duration = clock.elapsed();
    QVERIFY(shown);
    QVERIFY(!splash.screen().isVisible());
    QVERIFY2(duration >= 1000 && duration < 5000, QByteArray::number(duration));
    // Numbers are skipped on a busy machine.
    QVERIFY2(messages.first().size() == QStringLiteral("Загружено: 0%").size(),
        qPrintable(messages.first()));
    QVERIFY2(messages.size() > 5, QByteArray::number(messages.size()));
    int last = 0;
    for (qsizetype i = 0; i < messages.size(); ++i) {
        const QString digits = messages.at(i).section(u' ', 1).chopped(1);
        QCOMPARE(messages.at(i), QStringLiteral("Загружено: %1%").arg(digits));
        const int percent = digits.toInt();
        QVERIFY(percent >= last && percent <= 99);
        QVERIFY2(percent * ork2::kSplashMs <= 100 * times.at(i), qPrintable(messages.at(i)));
        last = percent;
    }
    QVERIFY(last >= 50);
}

void tst_wiring::splash_showsTheVersion()
{
    ork2::Splash splash;
    const auto *version = splash.screen().findChild<QLabel *>();
    QVERIFY(version != nullptr);
    QCOMPARE(version->text(), QStringLiteral("Версия 2.2.4"));
    QCOMPARE(version->alignment(), Qt::AlignRight | Qt::AlignBottom);
    QCOMPARE(version->minimumSize(), QSize(430, 540));
    QCOMPARE(version->font().family(), QStringLiteral("Palatino Linotype"));
    QCOMPARE(version->font().pointSize(), 9);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(version->palette().color(group, QPalette::WindowText), QColor(Qt::white));
    }
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_wiring test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_wiring.moc"
