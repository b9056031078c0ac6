// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick.Effects

// The light shadow of the main window's parts; the source is set by whoever uses it.
MultiEffect {
    shadowBlur: 0.8
    shadowColor: "#eeeeee"
    shadowEnabled: true
    shadowHorizontalOffset: 1
    shadowVerticalOffset: 1
}
