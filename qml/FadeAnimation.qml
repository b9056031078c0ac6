// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// For a Behavior: fades a property of the target out, applies the guarded change, fades it in.
SequentialAnimation {
    id: fade

    property string easingType: "Quad"
    property int fadeDuration: 180
    property string fadeProperty: "scale"
    property alias inEasingType: inStep.easing.type
    property alias inValue: inStep.to
    property alias outEasingType: outStep.easing.type
    property alias outValue: outStep.to
    property QtObject target: null

    NumberAnimation {
        id: outStep

        duration: fade.fadeDuration
        easing.type: Easing["In" + fade.easingType]
        property: fade.fadeProperty
        target: fade.target
        to: 0.5
    }

    PropertyAction {}

    NumberAnimation {
        id: inStep

        duration: fade.fadeDuration
        easing.type: Easing["Out" + fade.easingType]
        property: fade.fadeProperty
        target: fade.target
        to: 1
    }
}
