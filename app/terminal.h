// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "mainbackend.h"
#include "settings.h"
#include "uidata.h"

#include <QQmlApplicationEngine>
#include <QUrl>

namespace ork2 {

// Owns the objects that live from the end of the splash screen to the end of the event loop, in the
// order of construction. The back-end objects are destroyed before the engine that refers to them,
// so bindings in QML documents must handle null objects. Main thread.
class Terminal
{
public:
    // Loads the document. If that fails, the application's event loop exits with -1.
    Terminal(QObject &application, QUrl document);

    [[nodiscard]] QQmlApplicationEngine &engine() { return m_engine; }
    [[nodiscard]] mainBackEnd &backEnd() { return m_mainBackEnd; }

private:
    QQmlApplicationEngine m_engine;
    QUrl m_document;
    UiData m_uiData;  // first layer
    UiData m_uiData2; // second layer
    mainBackEnd m_mainBackEnd;
    settings m_settings;
};

} // namespace ork2
