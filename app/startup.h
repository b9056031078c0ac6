// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QObject>
#include <QPixmap>
#include <QSplashScreen>
#include <QUrl>

class QQmlApplicationEngine;
class UiData;
class mainBackEnd;

// Steps of the program start, called by main(). Main thread.
namespace ork2 {

inline constexpr qint64 kSplashMs = 1000;

// The splash screen: the logo with the version and a loading percentage.
class Splash
{
public:
    Splash();

    // Shows the splash screen for kSplashMs. Keeps one CPU core busy: the percentage is updated as
    // fast as the screen is repainted.
    void countUp();
    [[nodiscard]] QSplashScreen &screen() { return m_screen; }

private:
    QPixmap m_pixmap;
    QSplashScreen m_screen;
    QLabel m_version;
};

// Publishes the program's version to the documents as Qt.application.version.
void publishVersion();

// Makes the modules known that the documents import and Qt does not provide: Ork2Charts, and
// replacements for what this Qt version lacks.
void addImportPaths(QQmlApplicationEngine &engine);

// Connects the controller with the chart data of the two layers.
void connectCharts(mainBackEnd &backEnd, UiData &firstLayer, UiData &secondLayer);

// Exits the event loop with -1 if the document at this URL cannot be loaded.
void exitWithoutDocument(QQmlApplicationEngine &engine, QObject &application, const QUrl &document);

} // namespace ork2
