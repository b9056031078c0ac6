// SPDX-License-Identifier: GPL-3.0-or-later
#include "terminal.h"

#include "drawing.h"
#include "startup.h"

#include <QQmlContext>

#include <utility>

namespace ork2 {

Terminal::Terminal(QObject &application, QUrl document)
    : m_document(std::move(document))
{
    publishVersion();
    drawWithoutDepthBuffer();
    addImportPaths(m_engine);
    QQmlContext *context = m_engine.rootContext();
    context->setContextProperty(QStringLiteral("mainBackEnd"), &m_mainBackEnd);
    context->setContextProperty(QStringLiteral("settings"), &m_settings);
    context->setContextProperty(QStringLiteral("uiData"), &m_uiData);
    context->setContextProperty(QStringLiteral("uiData2"), &m_uiData2);
    connectCharts(m_mainBackEnd, m_uiData, m_uiData2);
    exitWithoutDocument(m_engine, application, m_document);
    m_engine.load(m_document);
    drawCheaply(m_engine);
}

} // namespace ork2
