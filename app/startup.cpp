// SPDX-License-Identifier: GPL-3.0-or-later
#include "startup.h"

#include "mainbackend.h"
#include "uidata.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGTexture>
#include <QSGTextureProvider>

namespace ork2 {

void countUp(QSplashScreen &splash, QPixmap &pixmap)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kSplashMs) {
        const auto elapsed = static_cast<double>(clock.elapsed());
        // The clock is read a second time; a pause in between must not show 100.
        const int percent = qMin(static_cast<int>(elapsed / kSplashMs * 100.0), 99);
        splash.showMessage(QObject::tr("Загружено: %1%").arg(percent),
            Qt::AlignRight | Qt::AlignBottom, Qt::black);
        {
            const QPainter painter(&pixmap);
        }
        splash.setPixmap(pixmap);
        QCoreApplication::processEvents();
    }
}

void addImportPaths(QQmlApplicationEngine &engine)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
    engine.addImportPath(QStringLiteral("qrc:/compat"));
#else
    Q_UNUSED(engine)
#endif
}

void connectCharts(mainBackEnd &backEnd, UiData &firstLayer, UiData &secondLayer)
{
    QObject::connect(
        &backEnd, SIGNAL(dropFCloud(qreal, qreal)), &firstLayer, SLOT(newData(qreal, qreal)));
    QObject::connect(
        &backEnd, SIGNAL(dropSCloud(qreal, qreal)), &secondLayer, SLOT(newData(qreal, qreal)));
    QObject::connect(&backEnd, SIGNAL(updateMyTime()), &backEnd, SLOT(minTime()));
    QObject::connect(&backEnd, SIGNAL(updateMyTime()), &backEnd, SLOT(maxTime()));
    QObject::connect(&firstLayer, SIGNAL(removeGPoints()), &backEnd, SLOT(removeGPoints()));
    QObject::connect(&secondLayer, SIGNAL(removeGPoints()), &backEnd, SLOT(removeGPoints()));
}

void exitWithoutDocument(QQmlApplicationEngine &engine, QObject &application, const QUrl &document)
{
    QObject::connect(
        &engine, &QQmlApplicationEngine::objectCreated, &application,
        [document](const QObject *object, const QUrl &url) {
            if (object == nullptr && url == document) {
                QCoreApplication::exit(-1);
            }
        },
        Qt::QueuedConnection);
}

void drawChangesOnce(QQuickItem &layeredItem)
{
    // In the thread that draws, while the interface thread waits. The texture is made anew whenever
    // its window is shown again.
    QObject::connect(
        layeredItem.window(), &QQuickWindow::afterSynchronizing, &layeredItem,
        [&layeredItem] {
            const QSGTextureProvider *provider = layeredItem.textureProvider();
            const QSGTexture *layer = provider != nullptr ? provider->texture() : nullptr;
            if (layer != nullptr && layer->inherits("QSGLayer")) {
                QObject::disconnect(layer, SIGNAL(updateRequested()), nullptr, nullptr);
            }
        },
        Qt::DirectConnection);
}

void drawClocksOnce(const QQmlApplicationEngine &engine)
{
    const QList<QObject *> documents = engine.rootObjects();
    for (const QObject *document : documents) {
        const auto rows = document->findChildren<QQuickItem *>(QStringLiteral("clockRow"));
        for (QQuickItem *row : rows) {
            drawChangesOnce(*row);
        }
    }
}

} // namespace ork2
