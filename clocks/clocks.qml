// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts

// The control panel's clock area: a carousel of the time zones and, left of it, one clock with UTC.
RowLayout {
    component ClockList: ListView {
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        highlightMoveDuration: 500
        height: parent.height
        highlightRangeMode: ListView.ApplyRange
        orientation: ListView.Horizontal
        snapMode: ListView.SnapOneItem
        // Since Qt 6.5 a window is laid out when it is first shown; the clocks tick before.
        width: Math.max(parent.width, 1)

        delegate: Component {
            Clock {
                required property string cityName
                required property real timeShift

                city: cityName
                shift: timeShift
            }
        }
    }

    component ArrowImage: Image {
        id: arrow

        readonly property alias fade: fade
        required property string name

        signal tapped

        Accessible.name: name
        Accessible.role: Accessible.Button
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 0
        anchors.margins: 10
        source: "arrow3.png"

        Accessible.onPressAction: tapped()

        Behavior on opacity {
            NumberAnimation {
                id: fade

                duration: 800
            }
        }

        TapHandler {
            onTapped: arrow.tapped()
        }
    }

    layer.enabled: true
    layoutDirection: Qt.RightToLeft
    objectName: "clockRow"
    spacing: 0

    Rectangle {
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.minimumWidth: 100
        Layout.preferredWidth: 250
        color: "#eeeeee"

        ClockList {
            id: zones

            Accessible.name: "Часовые пояса"
            Accessible.role: Accessible.List
            activeFocusOnTab: true
            cacheBuffer: 3000
            objectName: "zones"

            model: ListModel {
                ListElement {
                    cityName: "Калининград"
                    timeShift: 2
                }
                ListElement {
                    cityName: "Москва"
                    timeShift: 3
                }
                ListElement {
                    cityName: "Самара"
                    timeShift: 4
                }
                ListElement {
                    cityName: "Екатеринбург"
                    timeShift: 5
                }
                ListElement {
                    cityName: "Омск"
                    timeShift: 6
                }
                ListElement {
                    cityName: "Красноярск"
                    timeShift: 7
                }
                ListElement {
                    cityName: "Иркутск"
                    timeShift: 8
                }
                ListElement {
                    cityName: "Якутск"
                    timeShift: 9
                }
                ListElement {
                    cityName: "Владивосток"
                    timeShift: 10
                }
                ListElement {
                    cityName: "Магадан"
                    timeShift: 11
                }
                ListElement {
                    cityName: "Камчатка"
                    timeShift: 12
                }
                ListElement {
                    cityName: "Анадырь"
                    timeShift: 13
                }
            }

            // The arrow keys continue from the clock that is visible after dragging.
            onMovementEnded: currentIndex = indexAt(contentX + width / 2, height / 2)
        }

        Rectangle {
            anchors.fill: parent
            border.color: "#b22222"
            border.width: 2
            color: "transparent"
            objectName: "zonesFocus"
            radius: 4
            visible: zones.activeFocus
        }

        ArrowImage {
            anchors.left: parent.left
            name: "Предыдущие часы"
            objectName: "leftArrow"
            opacity: zones.atXBeginning ? 0 : 0.3
            rotation: -90

            onTapped: zones.decrementCurrentIndex()
        }

        ArrowImage {
            anchors.right: parent.right
            name: "Следующие часы"
            objectName: "rightArrow"
            opacity: zones.atXEnd ? 0 : 0.3
            rotation: 90

            onTapped: zones.incrementCurrentIndex()
        }
    }

    Rectangle {
        Layout.fillHeight: true
        Layout.fillWidth: true
        Layout.maximumWidth: 300
        Layout.minimumWidth: 50
        Layout.preferredWidth: 250
        color: "#eeeeee"

        ClockList {
            cacheBuffer: 200
            objectName: "utc"

            model: ListModel {
                ListElement {
                    cityName: "UTC"
                    timeShift: 0
                }
            }
        }
    }
}
