// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the complete object graph with a simulated line, from the received bytes to window and
// file.
#include "testterminal.h"

#include "documentitem.h"
#include "drawing.h"
#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "sharedvalues.h"
#include "timeout.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGTextureProvider>
#include <QScatterSeries>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <atomic>
#include <memory>

namespace {

QDateTime g_now;

const QByteArray kHeader = "Номер прибора: 17\r\n"
                           "Время:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\r\n";

} // namespace

// Counts how often the layer of an item is redrawn.
class RedrawCount : public QObject
{
    Q_OBJECT

public:
    explicit RedrawCount(QQuickItem &layered)
    {
        // Called in the render thread while the GUI thread is blocked.
        connect(
            layered.window(), &QQuickWindow::afterSynchronizing, this,
            [this, &layered] {
                const QSGTextureProvider *provider = layered.textureProvider();
                const QSGTexture *layer = provider != nullptr ? provider->texture() : nullptr;
                if (layer != nullptr && !m_watching) {
                    m_watching = connect(layer, SIGNAL(updateRequested()), this, SLOT(count()),
                        Qt::DirectConnection);
                }
            },
            Qt::DirectConnection);
        layered.window()->update();
    }

    [[nodiscard]] bool isWatching() const { return m_watching; }
    [[nodiscard]] int value() const { return m_count; }
    void reset() { m_count = 0; }

private Q_SLOTS:
    void count() { ++m_count; }

private:
    std::atomic<bool> m_watching = false;
    std::atomic<int> m_count = 0;
};

// Counts the frames of a window, which may be rendered in another thread.
class FrameCount : public QObject
{
    Q_OBJECT

public:
    explicit FrameCount(QQuickWindow &window)
    {
        connect(
            &window, &QQuickWindow::frameSwapped, this, [this] { ++m_count; },
            Qt::DirectConnection);
    }

    // Waits until all animations have ended. On a busy machine, there may be a delay between the
    // frames of an animation.
    [[nodiscard]] bool waitUntilIdle() const
    {
        constexpr int kIdleMs = 300;
        const QDeadlineTimer deadline(kTimeoutMs);
        int before = 0;
        do {
            before = m_count;
            QTest::qWait(kIdleMs);
        } while (m_count != before && !deadline.hasExpired());
        return m_count == before;
    }

    [[nodiscard]] int value() const { return m_count; }
    void reset() { m_count = 0; }

private:
    std::atomic<int> m_count = 0;
};

class tst_terminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void window_fitsTheScreen();
    void start_opensThePort_stopClosesIt();
    void reading_reachesWindowAndDayFile();
    void reading_errorCodes_showDashes();
    void minutes_eachHaveOneLine();
    void silentLine_isReportedLost_andRecovers();
    void unpluggedLine_isReported_andStartReopens();
    void missingPort_isReported_andWindowStaysUsable();
    void misalignedFrames_recover();
    void garbage_closesPort_stopAndStartRecovers();
    void startWithoutReading_writesNoOldLine();
    void points_reachTheChartOfTheirLayer();
    void settings_areUsedAfterRestart();
    void point10321_thinsBothSeriesOnce();
    void clocks_change_isDrawnOnce();
    void movement_doesNotRedrawTheBackdrop_data();
    void movement_doesNotRedrawTheBackdrop();
    void itemWithoutLayer_isDrawnAsBefore();
    void brokenDocument_exitsWithMinusOne();

private:
    void load();
    void click(const char *window, const char *button) const;
    [[nodiscard]] QObject *item(const char *id) const;
    [[nodiscard]] QString shown(const char *property) const;
    void press(bool start) const;
    void startAndWaitForPort();
    void send(const QByteArray &bytes);
    [[nodiscard]] QByteArray dayFile() const;
    [[nodiscard]] QQuickItem *visibleSecondHand() const;
    [[nodiscard]] MainBackEndProbe probe() const { return MainBackEndProbe(m_terminal->backEnd()); }

    ork2::PseudoTerminal m_line;
    std::unique_ptr<QTemporaryDir> m_base;
    std::unique_ptr<LogCapture> m_log;
    TestTerminal m_terminal;
    QObject *m_window = nullptr;
};

void tst_terminal::init()
{
    QVERIFY(m_line.open());
    m_base = std::make_unique<QTemporaryDir>();
    profile::clear();
    profile::store(ork2::kNamePath, m_base->path());
    profile::store(ork2::kUnitNumber, QStringLiteral("17"));
    profile::store(ork2::kPortToShow, m_line.path());
    m_log = std::make_unique<LogCapture>();
    load();
}

// Creates all objects, which corresponds to a restart of the program.
void tst_terminal::load()
{
    m_terminal.reset();
    noReplyCounter.storeRelaxed(0);
    m_terminal = makeTestTerminal();
    m_window = mainWindow(*m_terminal);
    QVERIFY(m_window != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(mainWindow(*m_terminal), kTimeoutMs));
    g_now = QDateTime(QDate(2026, 11, 15), QTime(12, 33, 30, 500));
    probe().setClock([] { return g_now; });
}

void tst_terminal::cleanup()
{
    m_terminal.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

void tst_terminal::click(const char *window, const char *button) const
{
    auto *found = item(window)->findChild<QObject *>(QString::fromLatin1(button));
    QVERIFY(found != nullptr);
    QVERIFY(QMetaObject::invokeMethod(found, "clicked"));
}

QObject *tst_terminal::item(const char *id) const
{
    return documentItem(*m_window, id);
}

QString tst_terminal::shown(const char *property) const
{
    return m_window->property(property).toString();
}

void tst_terminal::press(bool start) const
{
    QVERIFY(item("startButton") != nullptr);
    item("startButton")->setProperty("checked", start);
}

// Data received before the port is opened is discarded.
void tst_terminal::startAndWaitForPort()
{
    QSignalSpy texts(&m_terminal->backEnd(), &mainBackEnd::sendCounter);
    press(true);
    QTRY_VERIFY(!texts.isEmpty()
        && texts.constLast().first().toString().contains(QStringLiteral("Открыт")));
}

void tst_terminal::send(const QByteArray &bytes)
{
    QCOMPARE(m_line.write(bytes), bytes.size());
}

QByteArray tst_terminal::dayFile() const
{
    QFile file(m_base->filePath(QStringLiteral("Data/ORK-2 N17/2026.11.15.txt")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Also run on a screen with a height of 800 pixels.
void tst_terminal::window_fitsTheScreen()
{
    const auto *window = qobject_cast<QQuickWindow *>(m_window);
    const bool low = window->screen()->size().height() < 850;
    QTRY_COMPARE_WITH_TIMEOUT(window->height(), low ? 640 : 750, kTimeoutMs);
    QCOMPARE(window->minimumHeight(), low ? 640 : 750);
    QCOMPARE(window->maximumHeight(), 750);
}

void tst_terminal::start_opensThePort_stopClosesIt()
{
    QCOMPARE(shown("counterData"), QStringLiteral(" Статус: Прибор остановлен"));
    QVERIFY(!probe().comPort()->port().isOpen());
    press(true);
    QTRY_VERIFY(shown("counterData").contains(QStringLiteral(" >> Открыт!")));
    press(false);
    QTRY_VERIFY(shown("counterData").contains(QStringLiteral(" >> Закрыт!")));
    QTRY_COMPARE(shown("counterData"), QStringLiteral(" Статус: Прибор остановлен"));
}

void tst_terminal::reading_reachesWindowAndDayFile()
{
    startAndWaitForPort();
    send(QByteArrayLiteral("H112340000\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("1234"));
    QCOMPARE(shown("secondCloudAlt"), QStringLiteral("----"));
    QTRY_VERIFY(
        shown("counterData").contains(QStringLiteral("Получено сообщение: 0x48 0x31 0x31")));
    QCOMPARE(dayFile(), QByteArray());
    g_now.setTime(QTime(12, 34, 0, 500));
    QTRY_COMPARE(dayFile(), kHeader + "\r\n12:34:00\t1234\t----\tРезерв");
    press(false);
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("----"));
}

void tst_terminal::reading_errorCodes_showDashes()
{
    startAndWaitForPort();
    QObject *banner = item("errorText");
    QVERIFY(banner != nullptr);
    const auto sendCode = [this](const char *frame) {
        QSignalSpy readings(&m_terminal->backEnd(), &mainBackEnd::secondCloudAlt);
        send(QByteArray(frame));
        QVERIFY(readings.wait(kTimeoutMs));
        QCOMPARE(shown("firstCloudAlt"), QStringLiteral("----"));
        QCOMPARE(shown("secondCloudAlt"), QStringLiteral("----"));
    };
    sendCode("H077777777\r");
    QCOMPARE(banner->property("text").toString(), QStringLiteral("Нет вспышки лампы!!!"));
    QVERIFY(banner->property("visible").toBool());
    sendCode("H088888888\r");
    QCOMPARE(banner->property("text").toString(), QStringLiteral("Нет вспышки лампы!!!"));
    sendCode("H099999999\r");
    QCOMPARE(banner->property("text").toString(), QStringLiteral("Ошибка данных!"));
    sendCode("H000003000\r");
    QVERIFY(!banner->property("visible").toBool());
}

void tst_terminal::minutes_eachHaveOneLine()
{
    startAndWaitForPort();
    send(QByteArrayLiteral("H001000200\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0100"));
    QByteArray expected = kHeader;
    for (int minute = 34; minute < 37; ++minute) {
        for (const int second : {59, 0, 1}) {
            g_now.setTime(QTime(12, second == 59 ? minute - 1 : minute, second, 500));
            probe().tickSave();
        }
        expected += "\r\n12:" + QByteArray::number(minute) + ":00\t0100\t0200\tОсновной";
    }
    QCOMPARE(dayFile(), expected);
}

void tst_terminal::silentLine_isReportedLost_andRecovers()
{
    startAndWaitForPort();
    send(QByteArrayLiteral("H001000200\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0100"));
    noReplyCounter.storeRelaxed(30);
    QTRY_COMPARE(shown("counterData"), QStringLiteral(" Статус: Прибор отключен"));
    QCOMPARE(shown("firstCloudAlt"), QStringLiteral("----"));
    g_now.setTime(QTime(12, 34, 0, 500));
    QVERIFY(!probe().saveTimer()->isActive());
    send(QByteArrayLiteral("H003000400\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0300"));
    QTRY_COMPARE(dayFile(), kHeader + "\r\n12:34:00\t0300\t0400\tОсновной");
}

void tst_terminal::unpluggedLine_isReported_andStartReopens()
{
    startAndWaitForPort();
    send(QByteArrayLiteral("H001000200\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0100"));
    m_line.close();
    QTRY_VERIFY(shown("counterData").contains(QStringLiteral(" >> Закрыт!")));
    QVERIFY(m_line.open());
    currentPortName = m_line.path(); // a new adapter may get another name
    press(false);
    startAndWaitForPort();
    send(QByteArrayLiteral("H003000400\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0300"));
}

void tst_terminal::missingPort_isReported_andWindowStaysUsable()
{
    currentPortName = QStringLiteral("/dev/no-such-port");
    const QString before = shown("counterData");
    press(true);
    QTRY_VERIFY(shown("counterData") != before);
    QVERIFY(!shown("counterData").contains(QStringLiteral("Открыт")));
    QVERIFY(item("startButton")->property("checked").toBool());
    press(false);
    QTRY_COMPARE(shown("counterData"), QStringLiteral(" Статус: Прибор остановлен"));
}

void tst_terminal::misalignedFrames_recover()
{
    startAndWaitForPort();
    QSignalSpy lamp(&m_terminal->backEnd(), &mainBackEnd::connectionLED);
    // Byte by byte, starting in the middle of a frame.
    const QByteArray misaligned = QByteArrayLiteral("2345\rH112342345\r");
    for (const char byte : misaligned) {
        QSignalSpy read(&probe().comPort()->port(), &QIODevice::readyRead);
        send(QByteArray(1, byte));
        QTRY_VERIFY_WITH_TIMEOUT(!read.isEmpty(), kTimeoutMs);
    }
    QTRY_COMPARE_WITH_TIMEOUT(shown("firstCloudAlt"), QStringLiteral("1234"), kTimeoutMs);
    QCOMPARE(lamp, (QList<QVariantList>{{true}}));
}

void tst_terminal::garbage_closesPort_stopAndStartRecovers()
{
    startAndWaitForPort();
    QSignalSpy lamp(&m_terminal->backEnd(), &mainBackEnd::connectionLED);
    for (int byte = 0; byte < ork2::kMissesUntilLinkLost; ++byte) {
        QSignalSpy read(&probe().comPort()->port(), &QIODevice::readyRead);
        send(QByteArrayLiteral("X"));
        QTRY_VERIFY_WITH_TIMEOUT(!read.isEmpty(), kTimeoutMs);
    }
    QTRY_VERIFY(lamp.contains(QVariantList{false}));
    QTRY_VERIFY(shown("counterData").contains(QStringLiteral(" >> Закрыт!")));
    press(false);
    startAndWaitForPort();
    send(QByteArrayLiteral("H003000400\r"));
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0300"));
}

// Stop and Start do not change noReplyCounter, so it does not prevent the line.
void tst_terminal::startWithoutReading_writesNoOldLine()
{
    startAndWaitForPort();
    send(QByteArrayLiteral("H012342500\r"));
    QTRY_COMPARE_WITH_TIMEOUT(shown("firstCloudAlt"), QStringLiteral("1234"), kTimeoutMs);
    press(false);
    startAndWaitForPort();
    probe().saveTimer()->stop(); // the test calls the ticks
    QSignalSpy lamp(&m_terminal->backEnd(), &mainBackEnd::dataLED);
    g_now.setTime(QTime(18, 0, 0, 300));
    probe().tickSave();
    QCOMPARE(dayFile(), kHeader);
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));

    send(QByteArrayLiteral("H003000400\r"));
    QTRY_COMPARE_WITH_TIMEOUT(shown("firstCloudAlt"), QStringLiteral("0300"), kTimeoutMs);
    g_now.setTime(QTime(18, 1, 0, 300));
    lamp.clear();
    probe().tickSave();
    QCOMPARE(dayFile(), kHeader + "\r\n18:01:00\t0300\t0400\tОсновной");
    QCOMPARE(lamp, (QList<QVariantList>{{true}}));
}

void tst_terminal::points_reachTheChartOfTheirLayer()
{
    const auto points = [this](const char *series) {
        return qobject_cast<QScatterSeries *>(item(series))->points();
    };
    Q_EMIT m_terminal->backEnd().dropFCloud(1, 100);
    QCOMPARE(points("fLayerCloudSeries"), QList<QPointF>({{1, 100}}));
    QCOMPARE(points("sLayerCloudSeries"), QList<QPointF>());
    Q_EMIT m_terminal->backEnd().dropSCloud(2, 200);
    QCOMPARE(points("fLayerCloudSeries"), QList<QPointF>({{1, 100}}));
    QCOMPARE(points("sLayerCloudSeries"), QList<QPointF>({{2, 200}}));
}

void tst_terminal::settings_areUsedAfterRestart()
{
    ork2::PseudoTerminal otherLine;
    QVERIFY(otherLine.open());
    item("numberWindow")->setProperty("uNumber", QStringLiteral("23"));
    item("numberWindow")->setProperty("uYear", QStringLiteral("2026"));
    click("numberWindow", "saveButton");
    QCOMPARE(shown("unitNum"), QStringLiteral("23"));
    item("sWindow")->setProperty("portNum", otherLine.path());
    click("sWindow", "exitButton");

    load();
    QCOMPARE(shown("unitNum"), QStringLiteral("23"));
    QCOMPARE(shown("unitYr"), QStringLiteral("2026"));
    startAndWaitForPort();
    QCOMPARE(otherLine.write(QByteArrayLiteral("H000500000\r")), 11);
    QTRY_COMPARE(shown("firstCloudAlt"), QStringLiteral("0050"));
    g_now.setTime(QTime(12, 34, 0, 500));
    probe().tickSave();
    QVERIFY(QFile::exists(m_base->filePath(QStringLiteral("Data/ORK-2 N23/2026.11.15.txt"))));
    QVERIFY(dayFile().isEmpty());
}

void tst_terminal::point10321_thinsBothSeriesOnce()
{
    constexpr int kOneShort = ork2::kSeriesCapacity - 1;
    QList<QPointF> points;
    for (int i = 0; i < kOneShort; ++i) {
        points << QPointF(
            static_cast<qreal>(g_now.addSecs(10LL * (i - kOneShort)).toMSecsSinceEpoch()), 1500);
    }
    auto *first = qobject_cast<QScatterSeries *>(item("fLayerCloudSeries"));
    auto *second = qobject_cast<QScatterSeries *>(item("sLayerCloudSeries"));
    QVERIFY(first != nullptr && second != nullptr);
    first->replace(points);
    second->replace(points);
    QSignalSpy thinned(&m_terminal->backEnd(), &mainBackEnd::clearGraphData);

    probe().tickPlot();
    QCOMPARE(first->count(), 10320);
    QCOMPARE(second->count(), 10320);
    QCOMPARE(thinned.count(), 0);

    probe().tickPlot();
    QCOMPARE(thinned.count(), 1);
    QCOMPARE(first->count(), 8321);
    QCOMPARE(second->count(), 8321);
    QCOMPARE(first->at(0), points.at(2000));
    QCOMPARE(second->at(0), points.at(2000));
}

// Shows the control panel and returns the second hand of its UTC clock.
QQuickItem *tst_terminal::visibleSecondHand() const
{
    auto *panel = qobject_cast<QQuickWindow *>(item("controlPanel"));
    panel->setProperty("givenTime", QDateTime(QDate(2026, 11, 21), QTime(10, 20, 30), Qt::UTC));
    panel->show();
    if (!QTest::qWaitForWindowExposed(panel, kTimeoutMs)) {
        return nullptr;
    }
    return panel->findChild<QQuickItem *>(QStringLiteral("clockRow"))
        ->findChild<QQuickItem *>(QStringLiteral("utc"))
        ->property("currentItem")
        .value<QQuickItem *>()
        ->findChild<QQuickItem *>(QStringLiteral("secondHand"));
}

void tst_terminal::clocks_change_isDrawnOnce()
{
    constexpr int kChanges = 10;
    auto *hand = visibleSecondHand();
    QVERIFY(hand != nullptr);
    FrameCount frames(*hand->window());
    QVERIFY(frames.waitUntilIdle());

    const QImage before = hand->window()->grabWindow();
    QVERIFY(frames.waitUntilIdle());
    frames.reset();
    for (int i = 1; i <= kChanges; ++i) {
        hand->setX(hand->x() + 1);
        QTRY_VERIFY(frames.value() >= i);
        QVERIFY(frames.waitUntilIdle());
    }
    QCOMPARE(frames.value(), kChanges);
    QVERIFY(hand->window()->grabWindow() != before);
}

void tst_terminal::movement_doesNotRedrawTheBackdrop_data()
{
    QTest::addColumn<bool>("panel");
    QTest::newRow("digits and banner of the main window") << false;
    QTest::newRow("clocks of the control panel") << true;
}

void tst_terminal::movement_doesNotRedrawTheBackdrop()
{
    constexpr int kSomeFrames = 3; // of an animation, even on a slow machine
    QFETCH(const bool, panel);
    QQuickItem *hand = panel ? visibleSecondHand() : nullptr;
    QVERIFY(!panel || hand != nullptr);
    auto *window = panel ? hand->window() : qobject_cast<QQuickWindow *>(m_window);
    const auto pictures = m_window->findChildren<QQuickItem *>(QStringLiteral("backdropPicture"));
    const auto picture = std::find_if(pictures.begin(), pictures.end(),
        [window](const QQuickItem *candidate) { return candidate->window() == window; });
    QVERIFY(picture != pictures.end());
    FrameCount frames(*window);
    RedrawCount redraws(**picture);
    QTRY_VERIFY(redraws.isWatching());
    QVERIFY(frames.waitUntilIdle());
    frames.reset();
    redraws.reset();

    if (panel) {
        window->setProperty(
            "givenTime", QDateTime(QDate(2026, 11, 21), QTime(10, 20, 31), Qt::UTC));
    } else {
        window->setProperty("firstCloudAlt", QStringLiteral("0840"));
        Q_EMIT m_terminal->backEnd().noDataError();
    }
    QTRY_VERIFY(frames.value() >= kSomeFrames);
    QVERIFY(frames.waitUntilIdle());
    QCOMPARE(redraws.value(), 0);

    // A change of an item in the backdrop redraws it.
    auto *button = window->findChild<QQuickItem *>(
        panel ? QStringLiteral("dataButton") : QStringLiteral("buttonCP"));
    button->setProperty("text", QStringLiteral("другой"));
    QTRY_VERIFY(redraws.value() > 0);
}

void tst_terminal::itemWithoutLayer_isDrawnAsBefore()
{
    auto *window = qobject_cast<QQuickWindow *>(m_window);
    ork2::drawChangesOnce(*window->contentItem());
    FrameCount frames(*window);
    window->update();
    QTRY_VERIFY(frames.value() > 0);
}

void tst_terminal::brokenDocument_exitsWithMinusOne()
{
    m_terminal.reset();
    QFile file(m_base->filePath(QStringLiteral("broken.qml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("import QtQuick\nItem { nonsense }\n");
    file.close();
    m_terminal = makeTestTerminal(QUrl::fromLocalFile(file.fileName()));
    QCOMPARE(QCoreApplication::exec(), -1);
    m_terminal.reset();
    QCOMPARE(m_log->warnings().filter(QStringLiteral("broken.qml")).size(), 1);
    m_log = std::make_unique<LogCapture>();
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_terminal test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_terminal.moc"
