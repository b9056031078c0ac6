// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <chrono>

class QQmlApplicationEngine;
class QQuickItem;
class QQuickWindow;

// Makes the windows cheaper to draw, above all on machines without a graphics driver, where the
// processor draws. Main thread.
namespace ork2 {

// From one frame to the next of a window that the processor draws. Without a display's refresh
// rate, animations would run at 60 frames per second; with 25 they look the same, and so do the
// hands of the clocks with 18.
inline constexpr std::chrono::milliseconds kFrameInterval{40};
inline constexpr std::chrono::milliseconds kClockFrameInterval{55};

// The windows of this process have no depth buffer, which would double the memory of each window
// and each layer: items are drawn in the order in which they are stacked. To be called before the
// first window is shown. Qt reads the environment for it; QQuickGraphicsConfiguration leaves the
// layers' buffers.
void drawWithoutDepthBuffer();

// For all windows that the engine has loaded: limits their frame rates and releases memory, for
// example of a window that is hidden.
void drawCheaply(const QQmlApplicationEngine &engine);

// An item with a layer requests another frame after the one that shows its change, so that the
// whole window is drawn twice unless vertical synchronization prevents it. Disables this for an
// item whose layer is drawn by its window only, and not by an effect.
void drawChangesOnce(QQuickItem &layeredItem);

// Draws at most one frame per interval if the processor draws the window with OpenGL. The first
// frame after a pause is not delayed.
void limitFrameRate(QQuickWindow &window, std::chrono::milliseconds interval);

// Whether an OpenGL renderer of this name (GL_RENDERER) is a program that runs on the processor.
[[nodiscard]] bool isSoftwareRenderer(const QByteArray &name);

} // namespace ork2
