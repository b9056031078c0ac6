// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QObject>
#include <QPixmap>
#include <QSplashScreen>
#include <QUrl>

class QQmlApplicationEngine;
class QQuickItem;
class UiData;
class mainBackEnd;

// Steps of the start that the entry function takes in turn; main thread.
namespace ork2 {

inline constexpr qint64 kSplashMs = 1000;

// The logo with the version and a loading percentage, before anything else exists.
class Splash
{
public:
    Splash();

    // Shows it until kSplashMs have passed. Keeps one core busy: the percentage advances as fast as
    // the machine repaints.
    void countUp();
    [[nodiscard]] QSplashScreen &screen() { return m_screen; }

private:
    QPixmap m_pixmap;
    QSplashScreen m_screen;
    QLabel m_version;
};

// Makes the program's version known to the documents, as Qt.application.version.
void publishVersion();

// Where documents find modules that the toolkit's version does not bring.
void addImportPaths(QQmlApplicationEngine &engine);

// From the controller to the two layers' chart data and back.
void connectCharts(mainBackEnd &backEnd, UiData &firstLayer, UiData &secondLayer);

// Ends the event loop with -1 when the document at this address cannot be loaded.
void exitWithoutDocument(QQmlApplicationEngine &engine, QObject &application, const QUrl &document);

// An item with a layer asks for a further frame after the one that already shows its change, and
// the whole window is drawn twice where no display's beat holds it back. Ends that for an item of a
// window whose layer is drawn by this window only, and not by an effect.
void drawChangesOnce(QQuickItem &layeredItem);

// The same for the clocks of the control panel, the window that changes most.
void drawClocksOnce(const QQmlApplicationEngine &engine);

} // namespace ork2
