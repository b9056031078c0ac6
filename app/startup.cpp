// SPDX-License-Identifier: GPL-3.0-or-later
#include "startup.h"

#include "mainbackend.h"
#include "uidata.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QQmlApplicationEngine>

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

} // namespace ork2
