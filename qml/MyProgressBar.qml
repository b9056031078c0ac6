// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T
import Qt5Compat.GraphicalEffects

// Vertical level bar that animates itself. Kept in the resources; no document uses it.
T.ProgressBar {
    id: control

    component GlossyBar: Item {
        // End of the gradient: a short bar shows only its green side.
        readonly property real gradientEnd: {
            if (width > 180)
                return width;
            if (width > 120)
                return width + 30;
            return width + (width > 70 ? 70 : 100);
        }

        Rectangle {
            id: bar

            anchors.fill: parent
            radius: 5
            visible: false
        }

        LinearGradient {
            anchors.fill: bar
            end: Qt.point(parent.gradientEnd, 0)
            source: bar
            start: Qt.point(0, 0)

            gradient: Gradient {
                GradientStop {
                    position: 0.0
                    color: "#17a81a"
                }
                GradientStop {
                    position: 0.3
                    color: "#f0ff33"
                }
                GradientStop {
                    position: 0.5
                    color: "#ffb833"
                }
                GradientStop {
                    position: 0.8
                    color: "#fd4f0e"
                }
                GradientStop {
                    position: 1.0
                    color: "#ff0f0f"
                }
            }
        }

        LinearGradient {
            anchors.fill: bar
            source: bar

            gradient: Gradient {
                GradientStop {
                    position: 0.0
                    color: "transparent"
                }
                GradientStop {
                    position: 0.5
                    color: Qt.rgba(1, 1, 1, 0.3)
                }
                GradientStop {
                    position: 1.0
                    color: Qt.rgba(0, 0, 0, 0.05)
                }
            }
        }
    }

    readonly property alias run: run

    clip: true
    height: 30
    implicitWidth: implicitBackgroundWidth
    rotation: -90
    x: 160
    y: 260

    background: Rectangle {
        border.color: "#999999"
        implicitHeight: 6
        implicitWidth: 100
        radius: 5
    }
    contentItem: Item {
        GlossyBar {
            height: parent.height
            width: control.visualPosition * parent.width
        }
    }

    NumberAnimation on value {
        id: run

        duration: 5000
        from: 0.75
        loops: Animation.Infinite
        to: 1
    }
}
