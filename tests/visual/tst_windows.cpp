// SPDX-License-Identifier: GPL-3.0-or-later
// Compares screenshots of all windows with their references. If ORK2_SCREENSHOTS is set to a
// folder, the screenshots are saved there instead (see tools/screenshots). The tests of borders,
// grid lines and the logo also run at a scale of 125 %.
#include "testterminal.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "timeout.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScatterSeries>
#include <QStyleHints>
#include <QTest>
#include <QTimeZone>

#include <algorithm>
#include <memory>
#include <numeric>

namespace {

// Both pictures are scaled down by 4 before the comparison: text rendering differs slightly between
// machines, but an item that has moved by 6 pixels is still detected.
constexpr int kReduction = 4;
constexpr int kVisibleDifference = 24; // of 255, in one channel of one reduced pixel
constexpr int kToleratedPixels = 12;   // of the reduced picture

constexpr int kDay = 9; // UTC
constexpr int kNight = 20;

QImage reduced(const QImage &picture)
{
    return picture
        .scaled(picture.size() / kReduction, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

// Returns the number of visibly different pixels of the reduced pictures, or all pixels if the
// sizes differ.
int differentPixels(const QImage &one, const QImage &other)
{
    const QImage a = reduced(one);
    const QImage b = reduced(other);
    if (a.size() != b.size()) {
        return a.width() * a.height();
    }
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor p = a.pixelColor(x, y);
            const QColor q = b.pixelColor(x, y);
            const int difference = std::max(
                {qAbs(p.red() - q.red()), qAbs(p.green() - q.green()), qAbs(p.blue() - q.blue())});
            count += difference > kVisibleDifference ? 1 : 0;
        }
    }
    return count;
}

// Returns a screenshot of the window after all animations have ended: titles fade in for 5 s, the
// grid for 3 s, lamps and clock hands move, and all of this takes longer on a busy machine.
QImage idlePicture(QQuickWindow &window)
{
    constexpr int kStillMs = 500;
    const QDeadlineTimer deadline(kTimeoutMs);
    QImage before;
    QImage picture;
    do {
        before = picture;
        QTest::qWait(kStillMs);
        picture = window.grabWindow();
    } while (picture != before && !deadline.hasExpired());
    return picture;
}

// The place of an item in its window's picture.
QRectF inPicture(const QQuickItem &item)
{
    const QRectF place = item.mapRectToScene(item.boundingRect());
    const qreal ratio = item.window()->devicePixelRatio();
    return {place.topLeft() * ratio, place.size() * ratio};
}

// How much ink lies on a short way across a border, in fully black pixels.
double inkAcross(const QImage &picture, QPointF middle, QPoint step)
{
    constexpr int kReach = 4;
    QList<int> grays;
    for (int i = -kReach; i <= kReach; ++i) {
        grays.append(qGray(picture.pixel((middle + i * QPointF(step)).toPoint())));
    }
    const int ground = std::min(grays.constFirst(), grays.constLast());
    double ink = 0;
    for (const int gray : std::as_const(grays)) {
        ink += std::max(0, ground - gray);
    }
    return ink / ground;
}

// First row and height of each line of the colour in one column.
QList<std::pair<int, int>> linesIn(const QImage &picture, int column, int top, int bottom, int gray)
{
    constexpr int kTolerance = 6; // of 255
    QList<std::pair<int, int>> lines;
    for (int y = top; y <= bottom; ++y) {
        if (qAbs(qGray(picture.pixel(column, y)) - gray) > kTolerance) {
            continue;
        }
        if (!lines.isEmpty() && lines.constLast().first + lines.constLast().second == y) {
            ++lines.last().second;
        } else {
            lines.append({y, 1});
        }
    }
    return lines;
}

// The mean difference of two pictures of one size, of 255 in each channel.
double meanDifference(const QImage &one, const QImage &other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor p = one.pixelColor(x, y);
            const QColor q = other.pixelColor(x, y);
            sum +=
                qAbs(p.red() - q.red()) + qAbs(p.green() - q.green()) + qAbs(p.blue() - q.blue());
        }
    }
    return sum / 3 / one.width() / one.height();
}

} // namespace

class tst_windows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void window_matchesReference_data();
    void window_matchesReference();
    void window_shownAgain_isUnchanged_data();
    void window_shownAgain_isUnchanged();
    void button_hasFourEqualBorders_data();
    void button_hasFourEqualBorders();
    void gridLines_areEquallyThick_data();
    void gridLines_areEquallyThick();
    void logo_isScaledSmoothly();

private:
    [[nodiscard]] QQuickWindow *window(const QString &name) const;
    void showHour(int hour);
    void plotSomePoints();

    std::unique_ptr<LogCapture> m_log;
    TestTerminal m_terminal;
};

void tst_windows::initTestCase()
{
    profile::clear();
    profile::store(ork2::kUnitNumber, QStringLiteral("17"));
    profile::store(ork2::kUnitYear, QStringLiteral("2021"));
    profile::store(ork2::kPortToShow, QStringLiteral("ttyUSB0"));
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/settings");
    QVERIFY(QDir().mkpath(folder));
    QFile::remove(folder + QStringLiteral("/settings.txt"));
    QVERIFY(QFile::copy(
        QStringLiteral(":/settings/settings.txt"), folder + QStringLiteral("/settings.txt")));
    m_log = std::make_unique<LogCapture>();
    m_terminal = makeTestTerminal();
    QVERIFY(mainWindow(*m_terminal) != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(window(QString()), kTimeoutMs));

    showHour(kDay);
    // Shows a running measurement, without a port.
    window(QString())
        ->findChild<QObject *>(QStringLiteral("startButton"))
        ->setProperty("checked", true);
    m_terminal->backEnd().showTheCloud(QStringLiteral("0840"), QStringLiteral("1560"));
    QVERIFY(!idlePicture(*window(QString())).isNull());
    plotSomePoints(); // stops the timers, which would change the lamps
    Q_EMIT m_terminal->backEnd().connectionLED(true);
    Q_EMIT m_terminal->backEnd().dataLED(true);
    // Replaces the message about the missing port.
    m_terminal->backEnd().sendCounter(QStringLiteral("[12:08:36.000]:\tПолучено сообщение: 0x48 "
                                                     "0x30 0x30 0x38 0x34 0x30 0x31 0x35 0x36 0x30 "
                                                     "0x0D"));
}

void tst_windows::cleanupTestCase()
{
    m_terminal.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

QQuickWindow *tst_windows::window(const QString &name) const
{
    QQuickWindow *main = mainWindow(*m_terminal);
    return name.isEmpty() ? main : main->findChild<QQuickWindow *>(name);
}

void tst_windows::showHour(int hour)
{
    const QDateTime time(QDate(2026, 11, 21), QTime(hour, 8, 36), QTimeZone::utc());
    window(QStringLiteral("controlPanel"))->setProperty("givenTime", time);
}

void tst_windows::plotSomePoints()
{
    MainBackEndProbe probe(m_terminal->backEnd());
    for (QTimer *timer : {probe.requestTimer(), probe.saveTimer(), probe.plotTimer()}) {
        timer->stop();
    }
    const auto now = static_cast<qreal>(QDateTime::currentMSecsSinceEpoch());
    for (int i = 59; i >= 0; --i) {
        const qreal time = now - i * 10000.0;
        const qreal wave = qSin(i / 9.0);
        Q_EMIT m_terminal->backEnd().dropFCloud(time, 840 + 180 * wave);
        Q_EMIT m_terminal->backEnd().dropSCloud(time, 1700 - 240 * qSin(i / 13.0));
    }
    Q_EMIT m_terminal->backEnd().updateVoidGraph();
}

void tst_windows::window_matchesReference_data()
{
    QTest::addColumn<QString>("name");    // empty: the main window
    QTest::addColumn<QString>("movable"); // an item to move in the window
    QTest::addColumn<int>("hour");        // of the control panel's clocks, UTC
    QTest::newRow("main") << QString() << QStringLiteral("startButton") << kDay;
    QTest::newRow("settings") << QStringLiteral("sWindow") << QStringLiteral("exitButton") << kDay;
    QTest::newRow("number") << QStringLiteral("numberWindow") << QStringLiteral("saveButton")
                            << kDay;
    QTest::newRow("about") << QStringLiteral("aboutWindow") << QStringLiteral("logo") << kDay;
    QTest::newRow("control-panel")
        << QStringLiteral("controlPanel") << QStringLiteral("orkServerLED") << kDay;
    QTest::newRow("control-panel-night")
        << QStringLiteral("controlPanel") << QStringLiteral("orkServerLED") << kNight;
    QTest::newRow("sql-settings") << QStringLiteral("sqlSettingsWnd")
                                  << QStringLiteral("exitButton") << kDay;
}

void tst_windows::window_matchesReference()
{
    QFETCH(QString, name);
    QFETCH(QString, movable);
    QFETCH(int, hour);
    const QString target = qEnvironmentVariable("ORK2_SCREENSHOTS");
    QQuickWindow *shown = window(name);
    QVERIFY(shown != nullptr);
    showHour(hour);
    if (!name.isEmpty()) {
        shown->setProperty("visible", true);
        QVERIFY(QTest::qWaitForWindowExposed(shown, kTimeoutMs));
    }
    const QString file = QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral(".png");
    const QImage picture = idlePicture(*shown);
    QVERIFY(!picture.isNull());

    if (!target.isEmpty()) {
        QVERIFY(QDir().mkpath(target));
        QVERIFY(picture.save(QDir(target).filePath(file)));
    } else {
        const QImage reference(QDir(QStringLiteral(REFERENCES)).filePath(file));
        QVERIFY2(!reference.isNull(), "no reference picture; tools/screenshots creates it");
        const int different = differentPixels(picture, reference);
        if (different > kToleratedPixels) {
            const QString kept = QDir::temp().filePath(QStringLiteral("ork2-") + file);
            picture.save(kept);
            QFAIL(qPrintable(QStringLiteral("%1 pixels differ; current screenshot: %2")
                                 .arg(different)
                                 .arg(kept)));
        }
        // Check the comparison: it must detect an item that has moved by 6 pixels.
        auto *item = shown->findChild<QQuickItem *>(movable);
        QVERIFY(item != nullptr);
        const QRect place = item->mapRectToScene(item->boundingRect()).toRect();
        QImage moved = picture;
        QPainter painter(&moved);
        painter.fillRect(place, picture.pixelColor(place.topLeft() - QPoint(4, 4)));
        painter.drawImage(place.translated(-6, -6), picture.copy(place));
        painter.end();
        const int seen = differentPixels(moved, reference);
        QVERIFY2(seen > kToleratedPixels, QByteArray::number(seen));
    }
    if (!name.isEmpty()) {
        shown->close();
    }
}

void tst_windows::window_shownAgain_isUnchanged_data()
{
    QTest::addColumn<QString>("name"); // empty: the main window
    QTest::newRow("main") << QString();
    QTest::newRow("control-panel") << QStringLiteral("controlPanel");
}

// A hidden window releases its textures, including those of items that are drawn only once.
void tst_windows::window_shownAgain_isUnchanged()
{
    QFETCH(const QString, name);
    QQuickWindow *shown = window(name);
    shown->setVisible(true);
    QVERIFY(QTest::qWaitForWindowExposed(shown, kTimeoutMs));
    const QImage before = idlePicture(*shown);

    shown->setVisible(false);
    QTRY_VERIFY(!shown->isExposed());
    shown->setVisible(true);
    QVERIFY(QTest::qWaitForWindowExposed(shown, kTimeoutMs));
    QTRY_COMPARE_WITH_TIMEOUT(differentPixels(shown->grabWindow(), before), 0, kTimeoutMs);
    shown->setVisible(name.isEmpty());
}

void tst_windows::button_hasFourEqualBorders_data()
{
    QTest::addColumn<QString>("name"); // empty: the main window
    QTest::addColumn<QString>("button");
    const QString panel = QStringLiteral("controlPanel");
    QTest::newRow("connection") << panel << QStringLiteral("serverButton");
    QTest::newRow("disabled") << panel << QStringLiteral("portButton");
    QTest::newRow("data") << panel << QStringLiteral("dataButton");
    QTest::newRow("control panel") << QString() << QStringLiteral("buttonCP");
    QTest::newRow("start") << QString() << QStringLiteral("startButton");
    QTest::newRow("exit of the settings")
        << QStringLiteral("sWindow") << QStringLiteral("exitButton");
    QTest::newRow("exit of About") << QStringLiteral("aboutWindow") << QStringLiteral("exitButton");
}

void tst_windows::button_hasFourEqualBorders()
{
    QFETCH(const QString, name);
    QFETCH(const QString, button);
    QQuickWindow *shown = window(name);
    shown->setVisible(true);
    QVERIFY(QTest::qWaitForWindowExposed(shown, kTimeoutMs));
    const auto *item = shown->findChild<QQuickItem *>(button);
    QVERIFY(item != nullptr);
    const QImage picture = idlePicture(*shown);

    const QRectF place = inPicture(*item);
    const QPointF aside(place.width() / 4, place.height() / 4); // away from the label
    const QPointF middle = place.center() - aside;
    const double half = shown->devicePixelRatio() / 2; // of a border
    const QList<double> inks{inkAcross(picture, {place.left() + half, middle.y()}, {1, 0}),
        inkAcross(picture, {place.right() - half, middle.y()}, {1, 0}),
        inkAcross(picture, {middle.x(), place.top() + half}, {0, 1}),
        inkAcross(picture, {middle.x(), place.bottom() - half}, {0, 1})};
    const QByteArray found = QStringLiteral("left, right, top, bottom: %1, %2, %3, %4")
                                 .arg(inks[0])
                                 .arg(inks[1])
                                 .arg(inks[2])
                                 .arg(inks[3])
                                 .toUtf8();
    const double mean =
        std::accumulate(inks.begin(), inks.end(), 0.0) / static_cast<double>(inks.size());
    for (const double ink : inks) {
        QVERIFY2(qAbs(ink - mean) < 0.2 * mean, found);
    }
    // From 6.8 on, Qt draws a border of whole pixels.
    const double expected = shown->devicePixelRatio() * (item->isEnabled() ? 1 : 0.3);
    QVERIFY2(mean > 0.7 * expected && mean < 1.5 * expected, found);
    shown->setVisible(name.isEmpty());
}

void tst_windows::gridLines_areEquallyThick_data()
{
    QTest::addColumn<int>("height");
    for (const int height : {750, 701, 640}) {
        QTest::addRow("%d", height) << height;
    }
}

void tst_windows::gridLines_areEquallyThick()
{
    QFETCH(const int, height);
    constexpr int kLines = 5;
    QQuickWindow *shown = window(QString());
    shown->setMinimumHeight(640);
    shown->setHeight(height);
    QTRY_COMPARE_WITH_TIMEOUT(shown->height(), height, kTimeoutMs);
    const auto *chart = shown->findChild<QQuickItem *>(QStringLiteral("chartView"));
    QVERIFY(chart != nullptr);
    // No dot may lie on a line.
    auto *start = shown->findChild<QObject *>(QStringLiteral("startButton"));
    start->setProperty("checked", false);
    const QImage picture = idlePicture(*shown);
    start->setProperty("checked", true);

    const qreal ratio = shown->devicePixelRatio();
    const QRectF plot = chart->property("plotArea").toRectF();
    const QPointF corner = chart->mapToScene(plot.topLeft()) * ratio;
    const int beyond = qCeil(2 * ratio);
    const auto lines = linesIn(picture, qRound(corner.x() + plot.width() * ratio / 3),
        qFloor(corner.y()) - beyond, qCeil(corner.y() + plot.height() * ratio) + beyond, 0xcc);
    QStringList seen;
    for (const auto &[row, thickness] : lines) {
        seen.append(QStringLiteral("%1 at %2").arg(thickness).arg(row));
    }
    const QByteArray found = seen.join(QStringLiteral(", ")).toUtf8();
    QVERIFY2(lines.size() == kLines, found);
    for (int i = 1; i < kLines; ++i) {
        QVERIFY2(lines[i].second == lines[0].second, found);
        QVERIFY2(lines[i].first - lines[i - 1].first == lines[1].first - lines[0].first, found);
    }
}

// Drawn from all its pixels at once, a picture of four times the size has jagged edges.
void tst_windows::logo_isScaledSmoothly()
{
    constexpr double kTolerated = 1;
    QQuickWindow *shown = window(QStringLiteral("aboutWindow"));
    shown->setVisible(true);
    QVERIFY(QTest::qWaitForWindowExposed(shown, kTimeoutMs));
    const QRect place = inPicture(*shown->findChild<QQuickItem *>(QStringLiteral("logo"))).toRect();
    const QImage picture = idlePicture(*shown).copy(place);
    const QImage smooth =
        QImage(QStringLiteral(":/img/logoKAS.png"))
            .scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const double difference = meanDifference(picture, smooth);
    QVERIFY2(difference < kTolerated, QByteArray::number(difference));
    shown->setVisible(false);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QGuiApplication::styleHints()->setCursorFlashTime(
        0); // a blinking cursor would change the window
    tst_windows test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_windows.moc"
