// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing.h"

#include "timeout.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <atomic>

using namespace std::chrono_literals;

class tst_drawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void softwareRenderer_isKnownByName_data();
    void softwareRenderer_isKnownByName();
    void softwareRendering_continuousUpdates_keepTheInterval();
    void softwareRendering_changeWithinTheInterval_isInTheNextFrame();
};

void tst_drawing::softwareRenderer_isKnownByName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("software");
    QTest::newRow("Mesa") << QByteArray("llvmpipe (LLVM 15.0.6, 256 bits)") << true;
    QTest::newRow("Mesa without LLVM") << QByteArray("softpipe") << true;
    QTest::newRow("Windows") << QByteArray("GDI Generic") << true;
    QTest::newRow("Intel") << QByteArray("Mesa Intel(R) HD Graphics 4000 (IVB GT2)") << false;
    QTest::newRow("AMD") << QByteArray("AMD CEDAR (DRM 2.50.0)") << false;
    QTest::newRow("unknown") << QByteArray() << false;
}

void tst_drawing::softwareRenderer_isKnownByName()
{
    QFETCH(const QByteArray, name);
    QFETCH(const bool, software);
    QCOMPARE(ork2::isSoftwareRenderer(name), software);
}

// The display of the tests has no graphics driver.
void tst_drawing::softwareRendering_continuousUpdates_keepTheInterval()
{
    constexpr int kFrames = 12;
    constexpr auto kInterval = 60ms; // far from the 16 ms of an unlimited animation
    QQuickWindow window;
    ork2::limitFrameRate(window, kInterval);
    std::atomic<int> frames = 0;
    connect(
        &window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; },
        Qt::DirectConnection);
    connect(&window, &QQuickWindow::afterAnimating, &window, &QQuickWindow::update);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kTimeoutMs));
    QTRY_VERIFY_WITH_TIMEOUT(frames > 0, kTimeoutMs);
    QElapsedTimer time;
    time.start();
    const int before = frames;
    QTRY_VERIFY_WITH_TIMEOUT(frames >= before + kFrames, kTimeoutMs);
    QVERIFY2(
        time.elapsed() >= (kFrames - 1) * kInterval.count(), QByteArray::number(time.elapsed()));
}

void tst_drawing::softwareRendering_changeWithinTheInterval_isInTheNextFrame()
{
    constexpr auto kInterval = 600ms;
    QQuickWindow window;
    ork2::limitFrameRate(window, kInterval);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, kTimeoutMs));
    QSignalSpy swapped(&window, &QQuickWindow::frameSwapped);
    window.update();
    QTRY_VERIFY_WITH_TIMEOUT(!swapped.isEmpty(), kTimeoutMs);

    // Emitted when the main thread prepares a frame.
    QSignalSpy prepared(&window, &QQuickWindow::afterAnimating);
    window.update();
    QTRY_VERIFY_WITH_TIMEOUT(!prepared.isEmpty(), kTimeoutMs);
    bool changed = false;
    bool shown = false;
    connect(&window, &QQuickWindow::afterAnimating, this, [&] { shown = changed; });
    prepared.clear();
    window.update();
    QTimer::singleShot(kInterval / 3, this, [&changed] { changed = true; });
    QTRY_VERIFY_WITH_TIMEOUT(!prepared.isEmpty(), kTimeoutMs);
    QVERIFY(shown);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_drawing test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_drawing.moc"
