// SPDX-License-Identifier: GPL-3.0-or-later
#include "startup.h"

#include "mainbackend.h"
#include "uidata.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QQmlApplicationEngine>

void qml_register_types_Ork2Charts();

namespace ork2 {

Splash::Splash()
    : m_pixmap(QStringLiteral(":/img/logoKAS.png"))
    , m_screen(m_pixmap, Qt::WindowFlags())
    , m_version(QStringLiteral("Версия " ORK2_VERSION), &m_screen)
{
    QPalette palette;
    palette.setBrush(QPalette::All, QPalette::WindowText, QBrush(Qt::white, Qt::SolidPattern));
    m_version.setPalette(palette);
    m_version.setFont(QFont(QStringLiteral("Palatino Linotype"), 9));
    m_version.setMinimumHeight(540);
    m_version.setMinimumWidth(430);
    m_version.setAlignment(Qt::AlignRight | Qt::AlignBottom);
}

void Splash::countUp()
{
    m_version.show();
    m_screen.show();
    QCoreApplication::processEvents();
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < kSplashMs) {
        const auto elapsed = static_cast<double>(clock.elapsed());
        // This is a second reading of the clock, which may exceed kSplashMs; never show 100 %.
        const int percent = qMin(static_cast<int>(elapsed / kSplashMs * 100.0), 99);
        m_screen.showMessage(QObject::tr("Загружено: %1%").arg(percent),
            Qt::AlignRight | Qt::AlignBottom, Qt::black);
        {
            const QPainter painter(&m_pixmap);
        }
        m_screen.setPixmap(m_pixmap);
        QCoreApplication::processEvents();
    }
    m_screen.close();
}

void publishVersion()
{
    QCoreApplication::setApplicationVersion(QStringLiteral(ORK2_VERSION));
}

void addImportPaths(QQmlApplicationEngine &engine)
{
    // The types of a static library are registered only if it is used in this way.
    [[maybe_unused]] void (*const volatile dots)() = &qml_register_types_Ork2Charts;
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
