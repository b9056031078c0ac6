// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Effects
import "qrc:/"

Item {
    id: clock

    property string city
    property string dataStr // declared, never used
    // The time shown; null: the current time.
    property var givenTime: panel && panel.givenTime ? panel.givenTime : null
    property int hours
    // Invisible hands are not animated.
    readonly property bool inSight: Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized
                                    && (!ListView.view || x < ListView.view.contentX + ListView.view.width
                                        && x + width > ListView.view.contentX)
    property bool internationalTime: true
    property int minutes
    property bool night: false
    property var panel: Window.window
    property int seconds
    property real shift

    // Formatting a date in words is expensive, so it is done once a day.
    property string dateKey
    property string dateText

    function timeChanged() {
        const date = givenTime ? givenTime : new Date();
        // Not reduced to 0..23, intentional: in the eastern zones the night face lasts into the day.
        hours = internationalTime ? date.getUTCHours() + Math.floor(shift) : date.getHours();
        night = hours < 7 || hours > 19;
        minutes = internationalTime ? date.getUTCMinutes() + (shift % 1) * 60 : date.getMinutes();
        seconds = date.getUTCSeconds();
        const key = date.getFullYear() + "/" + date.getMonth() + "/" + date.getDate();
        if (key !== dateKey) {
            dateText = date.toLocaleDateString(Qt.locale("ru_RU"));
            dateKey = key;
        }
        if (panel && panel.calendarText !== undefined)
            panel.calendarText = dateText;
    }

    component Hand: Image {
        id: hand

        property alias angle: rotation.angle
        required property bool animated
        property alias pivot: rotation.origin
        readonly property alias swing: swing

        antialiasing: true
        smooth: true

        transform: Rotation {
            id: rotation

            Behavior on angle {
                enabled: hand.animated

                // Without the epsilon the spring would swing invisibly until the next second.
                SpringAnimation {
                    id: swing

                    damping: 0.2
                    epsilon: 0.25
                    modulus: 360
                    spring: 2
                }
            }
        }
    }

    Accessible.description: (hours % 24) + ":" + (minutes < 10 ? "0" : "") + minutes
    Accessible.name: "Часы: " + city
    Accessible.role: Accessible.Clock
    height: ListView.view && ListView.view.height >= 240 ? ListView.view.height : 240
    width: ListView.view && ListView.view.width >= 200
           ? ListView.view.width / Math.floor(ListView.view.width / 200) : 200

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    Timer {
        interval: 100
        repeat: true
        running: true
        triggeredOnStart: true

        onTriggered: clock.timeChanged()
    }

    Item {
        anchors.centerIn: parent
        height: 240
        width: 200

        // Cached as a texture, so that the moving hands do not cause another blur. In the control panel
        // it starts at a multiple of 4, which is a whole pixel at scales of 1.25, 1.5 and 1.75 too.
        Item {
            height: 332
            layer.enabled: true
            layer.smooth: true
            objectName: "day"
            visible: !clock.night
            width: 332
            x: -66
            y: -66

            Image {
                id: dayFace

                objectName: "dayFace"
                source: "clock.png"
                x: 66
                y: 66
            }

            MultiEffect {
                anchors.fill: dayFace
                blur: 1.0
                blurEnabled: true
                blurMax: 64
                brightness: 0.4
                objectName: "dayGlow"
                saturation: 0.2
                source: dayFace
            }
        }

        Image {
            objectName: "nightFace"
            source: "clock-night.png"
            visible: clock.night
        }

        Hand {
            angle: clock.hours * 30 + clock.minutes * 0.5
            animated: clock.inSight
            objectName: "hourHand"
            pivot: Qt.vector3d(7.5, 73, 0)
            source: "hour.png"
            x: 92.5
            y: 27
        }

        Hand {
            angle: clock.minutes * 6
            animated: clock.inSight
            objectName: "minuteHand"
            pivot: Qt.vector3d(6.5, 83, 0)
            source: "minute.png"
            x: 93.5
            y: 17
        }

        Hand {
            angle: clock.seconds * 6
            animated: clock.inSight
            objectName: "secondHand"
            pivot: Qt.vector3d(2.5, 80, 0)
            source: "second.png"
            x: 97.5
            y: 20
        }

        Image {
            objectName: "cap"
            x: 100 - width / 2
            y: 100 - height / 2
            source: "center.png"
        }

        // qrc:/ is not known to qmllint.
        // qmllint disable
        SoftShadow {
            anchors.fill: cityLabel
            blurMax: 10
            objectName: "cityShadow"
            shadowColor: "black"
            shadowHorizontalOffset: 0
            shadowVerticalOffset: 0
            source: cityLabel
            strength: 2
        }
        // qmllint enable

        Text {
            id: cityLabel

            anchors.horizontalCenter: parent.horizontalCenter
            color: "#fdfdfd"
            font.bold: false
            font.family: fontPalantino.font.family
            font.pixelSize: 26
            objectName: "cityLabel"
            style: Text.Raised
            styleColor: "black"
            text: clock.city
            y: 210
        }
    }
}
