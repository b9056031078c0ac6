// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Kept in the resources; no document uses it.
// Shows a guarded change of an item as a cross-fade between pictures of its old and its new look.
// Custom animations receive the picture to animate in a property "target".
Behavior {
    id: behavior

    // qmllint disable unqualified
    property bool delayWhile: false
    property string easingType: "Quad"
    property Component enterAnimation: ParallelAnimation {
        id: enterFade

        property Item target: null

        Component.onCompleted: {
            for (const name of behavior.fadeProperties)
                animations.push(behavior.enterStep.createObject(enterFade, {
                    property: name,
                    target: target,
                    to: behavior.fadeTarget[name]
                }));
        }
    }
    property var enterValue: exitValue
    property Component exitAnimation: NumberAnimation {
        duration: behavior.fadeDuration
        easing.type: behavior.easing("In")
        properties: behavior.fadeProperties.join(",")
        to: behavior.exitValue
    }
    property var exitValue: 0
    property int fadeDuration: 300
    property var fadeProperties: [fadeProperty]
    property string fadeProperty: "opacity"
    property Item fadeTarget: targetProperty.object as Item
    property bool sequential: false

    readonly property Component enterStep: NumberAnimation {
        duration: behavior.fadeDuration
        easing.type: behavior.easing("Out")
        from: behavior.enterValue
    }
    readonly property Component snapshot: ShaderEffectSource {
        property Animation fade: null

        function prepare(component) {
            fade = component.createObject(this, {target: this});
            fade.stopped.connect(() => destroy());
        }

        height: sourceItem ? sourceItem.height : 0
        hideSource: true
        opacity: sourceItem ? sourceItem.opacity : 0
        rotation: sourceItem ? sourceItem.rotation : 0
        scale: sourceItem ? sourceItem.scale : 1
        transformOrigin: sourceItem ? sourceItem.transformOrigin : Item.Center
        width: sourceItem ? sourceItem.width : 0
        x: sourceItem ? sourceItem.x : 0
        y: sourceItem ? sourceItem.y : 0
        z: sourceItem ? sourceItem.z : 0
    }
    // qmllint enable unqualified
    property Item leaving: null
    property var waiting: []

    function easing(direction) {
        return easingType === "Linear" ? Easing.Linear : Easing[direction + easingType];
    }

    function takeSnapshot(live) {
        return snapshot.createObject(fadeTarget.parent, {live: live, sourceItem: fadeTarget});
    }

    function beginExit() {
        // A change during the wait reuses the picture of the old look.
        if (leaving)
            return;
        leaving = takeSnapshot(false);
        for (const name of ["x", "y", "z", "width", "height", "opacity", "rotation", "scale",
                            "transformOrigin"])
            leaving[name] = leaving[name];
        leaving.prepare(exitAnimation);
    }

    function beginEnter() {
        const arriving = takeSnapshot(true);
        for (const name of fadeProperties)
            arriving[name] = enterValue;
        arriving.prepare(enterAnimation);

        const exit = leaving.fade;
        const enter = arriving.fade;
        leaving = null;
        if (sequential)
            exit.stopped.connect(() => enter.start());
        else
            exit.started.connect(() => enter.start());
        if (delayWhile)
            waiting.push(exit);
        else
            exit.start();
    }

    onDelayWhileChanged: {
        if (delayWhile)
            return;
        const exits = waiting;
        waiting = [];
        for (const exit of exits)
            exit.start();
    }

    SequentialAnimation {
        ScriptAction {
            script: behavior.beginExit()
        }

        PauseAnimation {
            duration: 5
        }

        PropertyAction {}

        ScriptAction {
            script: behavior.beginEnter()
        }
    }
}
