// SPDX-License-Identifier: GPL-3.0-or-later
// Compares screenshots of all windows with the references in docs/screenshots/. If ORK2_SCREENSHOTS
// is set to a folder, the screenshots are saved there instead (see tools/screenshots).
#include "terminal.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "timeout.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QImage>
#include <QLibraryInfo>
#include <QPainter>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScatterSeries>
#include <QStyleHints>
#include <QTest>
#include <QVersionNumber>

#include <algorithm>
#include <memory>

namespace {

// Both pictures are scaled down by 4 before the comparison: text rendering differs slightly between
// machines, but an item that has moved by 6 pixels is still detected.
constexpr int kReduction = 4;
constexpr int kVisibleDifference = 24; // of 255, in one channel of one reduced pixel
constexpr int kToleratedPixels = 12;   // of the reduced picture

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

private:
    [[nodiscard]] QQuickWindow *window(const QString &name) const;
    void plotSomePoints();

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ork2::Terminal> m_terminal;
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
    m_terminal = std::make_unique<ork2::Terminal>(*qApp, QUrl(QStringLiteral("qrc:/main")));
    QVERIFY(!m_terminal->engine().rootObjects().isEmpty());
    QVERIFY(QTest::qWaitForWindowExposed(window(QString()), kTimeoutMs));

    QObject *panel = window(QStringLiteral("controlPanel"));
    panel->setProperty("givenTime", QDateTime(QDate(2026, 11, 21), QTime(9, 8, 36), Qt::UTC));
    Q_EMIT m_terminal->backEnd().connectionLED(true);
    Q_EMIT m_terminal->backEnd().dataLED(true);
    // Shows a running measurement, without a port.
    window(QString())
        ->findChild<QObject *>(QStringLiteral("startButton"))
        ->setProperty("checked", true);
    m_terminal->backEnd().showTheCloud(QStringLiteral("0840"), QStringLiteral("1560"));
    QVERIFY(!idlePicture(*window(QString())).isNull());
    plotSomePoints();
    // Replaces the message about the missing port.
    m_terminal->backEnd().sendCounter(QStringLiteral("[12:08:36.000]:\tПолучено сообщение: 0x48 "
                                                     "0x30 0x30 0x38 0x34 0x30 0x31 0x35 0x36 0x30 "
                                                     "0x0D"));
}

void tst_windows::cleanupTestCase()
{
    MainBackEndProbe(m_terminal->backEnd()).endWorker();
    m_terminal.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

QQuickWindow *tst_windows::window(const QString &name) const
{
    QObject *root = m_terminal->engine().rootObjects().constFirst();
    return name.isEmpty() ? qobject_cast<QQuickWindow *>(root)
                          : root->findChild<QQuickWindow *>(name);
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
    QTest::newRow("main") << QString() << QStringLiteral("startButton");
    QTest::newRow("settings") << QStringLiteral("sWindow") << QStringLiteral("exitButton");
    QTest::newRow("number") << QStringLiteral("numberWindow") << QStringLiteral("saveButton");
    QTest::newRow("about") << QStringLiteral("aboutWindow") << QStringLiteral("logo");
    QTest::newRow("control-panel")
        << QStringLiteral("controlPanel") << QStringLiteral("orkServerLED");
    QTest::newRow("sql-settings") << QStringLiteral("sqlSettingsWnd")
                                  << QStringLiteral("exitButton");
}

void tst_windows::window_matchesReference()
{
    QFETCH(QString, name);
    QFETCH(QString, movable);
    const QString target = qEnvironmentVariable("ORK2_SCREENSHOTS");
    if (target.isEmpty() && QLibraryInfo::version() >= QVersionNumber(6, 5)) {
        QSKIP("the reference pictures show the replacement of QtQuick.Effects used before Qt 6.5");
    }
    QQuickWindow *shown = window(name);
    QVERIFY(shown != nullptr);
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

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QGuiApplication::styleHints()->setCursorFlashTime(
        0); // a blinking cursor would change the window
    tst_windows test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_windows.moc"
