// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Fades an item out before it is hidden and in after it is shown. Kept in the resources; no document
// uses it.
FadeBehavior {
    enterAnimation.duration: targetValue ? fadeDuration : 0
    exitAnimation.duration: targetValue ? 0 : fadeDuration
    fadeDuration: 200
    fadeProperty: "opacity"
}
