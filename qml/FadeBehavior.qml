// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Kept in the resources; no document uses it but VisibleBehavior.
// Fades the target away, applies the guarded change, and fades it back.
Behavior {
    id: behavior

    property string easingType: "Quad"
    readonly property alias enterAnimation: enterStep
    readonly property alias exitAnimation: exitStep
    property int fadeDuration: 50
    property string fadeProperty: "opacity"
    property QtObject fadeTarget: targetProperty.object
    property real fadeValue: 5
    property real restingValue: 0

    function easing(direction) {
        return easingType === "Linear" ? Easing.Linear : Easing[direction + easingType];
    }

    // A change during a fade must not mistake the half-faded value for the target's own value.
    onTargetValueChanged: {
        if (fadeTarget && !steps.running)
            restingValue = fadeTarget[fadeProperty];
    }

    SequentialAnimation {
        id: steps

        NumberAnimation {
            id: exitStep

            duration: behavior.fadeDuration
            easing.type: behavior.easing("In")
            property: behavior.fadeProperty
            target: behavior.fadeTarget
            to: behavior.fadeValue
        }

        PropertyAction {}

        NumberAnimation {
            id: enterStep

            duration: behavior.fadeDuration
            easing.type: behavior.easing("Out")
            property: behavior.fadeProperty
            target: behavior.fadeTarget
            to: behavior.restingValue
        }
    }
}
