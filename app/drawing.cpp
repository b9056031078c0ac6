// SPDX-License-Identifier: GPL-3.0-or-later
#include "drawing.h"

#include <QCoreApplication>
#include <QEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGTexture>
#include <QSGTextureProvider>
#include <QTimer>

#include <algorithm>
#include <array>
#include <atomic>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ork2 {

namespace {

constexpr std::chrono::seconds kDrawnAfter{10}; // all animations of a window that has been shown

// Called in the render thread.
bool isDrawnByProcessor()
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    if (context == nullptr) {
        return false; // another graphics interface than OpenGL
    }
    const auto *name = context->functions()->glGetString(GL_RENDERER);
    return isSoftwareRenderer(reinterpret_cast<const char *>(name));
}

// Holds back the window's requests for a frame until the interval has passed. The main thread does
// not wait meanwhile, so that a reading that arrives is shown by the next frame.
class FramePace : public QObject
{
public:
    FramePace(QQuickWindow &window, std::chrono::milliseconds interval)
        : QObject(&window)
        , m_interval(interval)
    {
        m_delay.setSingleShot(true);
        m_delay.setTimerType(Qt::PreciseTimer);
        connect(&m_delay, &QTimer::timeout, this, [this, &window] {
            m_lastFrame = {};
            QEvent request(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(&window, &request);
        });
        connect(
            &window, &QQuickWindow::frameSwapped, this,
            [this] {
                if (!m_known) {
                    m_limited = isDrawnByProcessor();
                    m_known = true;
                }
            },
            Qt::DirectConnection);
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest && m_limited) {
            const auto now = std::chrono::steady_clock::now();
            if (now < m_lastFrame + m_interval) {
                if (!m_delay.isActive()) {
                    m_delay.start(std::chrono::ceil<std::chrono::milliseconds>(
                        m_lastFrame + m_interval - now));
                }
                return true;
            }
            m_lastFrame = now;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    std::chrono::milliseconds m_interval;
    QTimer m_delay;
    bool m_known = false;                // used in the render thread only
    std::atomic<bool> m_limited = false; // set in the render thread
    std::chrono::steady_clock::time_point m_lastFrame;
};

// Shaders are compiled when a window is first drawn. The C library keeps the memory for that in the
// heap of the render thread, although none will be needed again for hours.
void returnFreeMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

// A hidden window keeps nothing that it was drawn with.
void releaseWhenHidden(QQuickWindow &window)
{
    window.setPersistentGraphics(false);
    window.setPersistentSceneGraph(false);
}

// Once, when the windows have been drawn, and after a window has been shown or hidden.
void returnFreeMemoryLater(QQuickWindow &window)
{
    auto *delay = new QTimer(&window);
    delay->setSingleShot(true);
    delay->setInterval(kDrawnAfter);
    QObject::connect(delay, &QTimer::timeout, &window, returnFreeMemory);
    QObject::connect(&window, &QWindow::visibleChanged, delay, qOverload<>(&QTimer::start));
    delay->start();
}

} // namespace

void drawWithoutDepthBuffer()
{
    qputenv("QSG_NO_DEPTH_BUFFER", "1");
}

void drawCheaply(const QQmlApplicationEngine &engine)
{
    const QList<QObject *> documents = engine.rootObjects();
    for (QObject *document : documents) {
        const auto windows = document->findChildren<QQuickWindow *>();
        for (QQuickWindow *window : windows) {
            releaseWhenHidden(*window);
            returnFreeMemoryLater(*window);
            auto *clocks = window->findChild<QQuickItem *>(QStringLiteral("clockRow"));
            if (clocks != nullptr) {
                drawChangesOnce(*clocks);
            }
            limitFrameRate(*window, clocks != nullptr ? kClockFrameInterval : kFrameInterval);
        }
        if (auto *mainWindow = qobject_cast<QQuickWindow *>(document)) {
            returnFreeMemoryLater(*mainWindow);
            limitFrameRate(*mainWindow, kFrameInterval);
        }
    }
}

void drawChangesOnce(QQuickItem &layeredItem)
{
    // Called in the render thread while the GUI thread is blocked. The texture is created again
    // whenever the window is shown.
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

void limitFrameRate(QQuickWindow &window, std::chrono::milliseconds interval)
{
    new FramePace(window, interval);
}

bool isSoftwareRenderer(const QByteArray &name)
{
    const std::array names{"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SwiftShader",
        "GDI Generic", "Microsoft Basic Render Driver"};
    return std::any_of(names.begin(), names.end(),
        [&name](const char *software) { return name.contains(software); });
}

} // namespace ork2
