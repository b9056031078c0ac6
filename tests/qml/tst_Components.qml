// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

// The frame, the progress bar and the animations for changes of a property.
Item {
    id: root

    height: 400
    width: 400

    Component {
        id: frameComponent

        RedFrame {
            id: frame

            property alias exit: exitButton
            property alias other: otherButton

            FrameExitButton {
                id: exitButton
            }

            FrameExitButton {
                id: otherButton

                height: 23
                text: "Записать"
                width: 92
            }
        }
    }

    Component {
        id: barComponent

        MyProgressBar {}
    }

    Component {
        id: fadeAnimationComponent

        Rectangle {
            id: fading

            property alias animation: animation
            property int change: 0

            Behavior on change {
                FadeAnimation {
                    id: animation

                    target: fading
                }
            }
        }
    }

    Component {
        id: fadeBehaviorComponent

        Rectangle {
            property alias fade: fade

            height: 10
            scale: 0.6
            width: 10

            FadeBehavior on radius {
                id: fade
            }
        }
    }

    Component {
        id: visibleBehaviorComponent

        Rectangle {
            property alias fade: fade

            height: 10
            width: 10

            VisibleBehavior on visible {
                id: fade
            }
        }
    }

    Component {
        id: crossFadeComponent

        Rectangle {
            property alias fade: fade

            color: "#ff0000"
            height: 100
            width: 100
            x: 50
            y: 50

            CrossFadeBehavior on color {
                id: fade
            }
        }
    }

    Component {
        id: scaleAwayComponent

        NumberAnimation {
            duration: 200
            property: "scale"
            to: 0.25
        }
    }

    TestCase {
        // Pictures that a cross-fade has placed over its item.
        function snapshots() {
            return Array.from(root.children).filter(child => child instanceof ShaderEffectSource);
        }

        function colorAt(x, y) {
            const picture = grabImage(root);
            const column = x * root.Screen.devicePixelRatio;
            const row = y * root.Screen.devicePixelRatio;
            return [picture.red(column, row), picture.green(column, row),
                    picture.blue(column, row)];
        }

        function make(component) {
            return createTemporaryObject(component, root);
        }

        name: "Components"
        when: windowShown

        function init() {
            testLog.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_redFrame_fillsParentWithPanelInside() {
            const frame = make(frameComponent);
            compare(frame.width, 400);
            compare(frame.height, 400);
            compare([frame.panel.x, frame.panel.y], [8, 8]);
            compare([frame.panel.width, frame.panel.height], [384, 384]);
            compare(frame.panel.radius, 4);
            verify(Qt.colorEqual(frame.panel.color, "#eeeeee"));
            verify(Qt.colorEqual(frame.gradient.stops[0].color, "#a02222"));
            compare(frame.gradient.stops[0].position, 0);
            verify(Qt.colorEqual(frame.gradient.stops[1].color, "#b82222"));
            compare(frame.gradient.stops[1].position, 1);
            frame.lowerColor = "#e82222";
            verify(Qt.colorEqual(frame.gradient.stops[1].color, "#e82222"));
        }

        function test_redFrame_contentStandsOnPanel() {
            const frame = make(frameComponent);
            compare(frame.exit.parent, frame.panel);
        }

        function test_frameExitButton_standsInCorner_data() {
            return [
                {tag: "exit", width: 95, height: 21, text: "Выход"},
                {tag: "other", width: 92, height: 23, text: "Записать"}
            ];
        }

        function test_frameExitButton_standsInCorner(row) {
            const button = make(frameComponent)[row.tag];
            compare(button.text, row.text);
            compare([button.width, button.height], [row.width, row.height]);
            compare(button.x + button.width, 384 - 12);
            compare(button.y + button.height, 384 - 8);
        }

        function test_frameExitButton_castsShadow() {
            const button = make(frameComponent).exit;
            const shadow = Array.from(button.parent.children).find(
                child => child.source === button.background);
            verify(shadow);
            compare(shadow.width, 95);
            compare(shadow.shadowBlur, 0.8);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
            verify(shadow.z < button.z);
            button.visible = false;
            compare(shadow.visible, false);
        }

        function test_progressBar_standsUpright() {
            const bar = make(barComponent);
            compare([bar.x, bar.y, bar.height, bar.rotation], [160, 260, 30, -90]);
            compare(bar.clip, true);
            compare([bar.background.implicitWidth, bar.background.implicitHeight], [100, 6]);
            compare(bar.background.radius, 5);
            compare(bar.background.border.width, 1);
            verify(Qt.colorEqual(bar.background.border.color, "#999999"));
        }

        function test_progressBar_runsByItself() {
            const bar = make(barComponent);
            verify(bar.value >= 0.75 && bar.value <= 1);
            const before = bar.value;
            tryVerify(() => bar.value !== before);
            const filled = bar.contentItem.children[0];
            fuzzyCompare(filled.width, bar.value * bar.width, 1);
            compare(filled.height, 30);
            compare([bar.run.from, bar.run.to, bar.run.duration], [0.75, 1, 5000]);
            verify(bar.run.loops < 0);
        }

        function test_progressBar_gradientEndsByWidth_data() {
            return [
                {tag: "short", width: 70, end: 170},
                {tag: "over 70", width: 71, end: 141},
                {tag: "at 120", width: 120, end: 190},
                {tag: "over 120", width: 121, end: 151},
                {tag: "at 180", width: 180, end: 210},
                {tag: "over 180", width: 181, end: 181}
            ];
        }

        function test_progressBar_gradientEndsByWidth(row) {
            const filled = make(barComponent).contentItem.children[0];
            filled.width = row.width;
            const colors = filled.children[1];
            compare([colors.start.x, colors.start.y], [0, 0]);
            compare([colors.end.x, colors.end.y], [row.end, 0]);
        }

        function test_progressBar_colors() {
            const bar = make(barComponent).contentItem.children[0];
            compare(bar.children[0].radius, 5);
            const stops = item => Array.from(item.gradient.stops).map(
                stop => [stop.position, stop.color.toString()]);
            compare(stops(bar.children[1]), [[0.0, "#17a81a"], [0.3, "#f0ff33"], [0.5, "#ffb833"],
                                             [0.8, "#fd4f0e"], [1.0, "#ff0f0f"]]);
            compare(stops(bar.children[2]), [[0.0, "#00000000"], [0.5, "#4dffffff"],
                                             [1.0, "#0d000000"]]);
        }

        function test_fadeAnimation_byDefault() {
            const animation = make(fadeAnimationComponent).animation;
            compare(animation.fadeProperty, "scale");
            compare(animation.fadeDuration, 180);
            compare(animation.outValue, 0.5);
            compare(animation.inValue, 1);
            compare(animation.easingType, "Quad");
            compare(animation.outEasingType, Easing.InQuad);
            compare(animation.inEasingType, Easing.OutQuad);
            const steps = animation.animations;
            compare(steps.length, 3);
            compare([steps[0].duration, steps[2].duration], [180, 180]);
            animation.easingType = "Cubic";
            compare([steps[0].easing.type, steps[2].easing.type], [Easing.InCubic, Easing.OutCubic]);
            animation.fadeDuration = 20;
            compare([steps[0].duration, steps[2].duration], [20, 20]);
        }

        function test_fadeAnimation_appliesChangeInTheMiddle() {
            const item = make(fadeAnimationComponent);
            let scaleAtChange = -1;
            item.changeChanged.connect(() => scaleAtChange = item.scale);
            item.change = 7;
            compare(item.change, 0);
            tryCompare(item, "change", 7);
            compare(scaleAtChange, 0.5);
            tryCompare(item, "scale", 1);
        }

        function test_fadeAnimation_withOtherProperty_fadesThatOne() {
            const item = make(fadeAnimationComponent);
            item.animation.fadeProperty = "opacity";
            item.animation.outValue = 0.1;
            item.animation.inValue = 0.8;
            let opacityAtChange = -1;
            item.changeChanged.connect(() => opacityAtChange = item.opacity);
            item.change = 1;
            tryCompare(item, "change", 1);
            compare(opacityAtChange, 0.1);
            tryCompare(item, "opacity", 0.8);
            compare(item.scale, 1);
        }

        function test_fadeBehavior_byDefault() {
            const item = make(fadeBehaviorComponent);
            compare(item.fade.fadeTarget, item);
            compare(item.fade.fadeProperty, "opacity");
            compare(item.fade.fadeValue, 5);
            compare(item.fade.fadeDuration, 50);
            compare(item.fade.exitAnimation.duration, 50);
            compare(item.fade.enterAnimation.duration, 50);
            compare(item.fade.exitAnimation.easing.type, Easing.InQuad);
            compare(item.fade.enterAnimation.easing.type, Easing.OutQuad);
            item.fade.easingType = "Linear";
            compare(item.fade.exitAnimation.easing.type, Easing.Linear);
            compare(item.fade.enterAnimation.easing.type, Easing.Linear);
        }

        function test_fadeBehavior_fadesAwayAndBackToOwnValue() {
            const item = make(fadeBehaviorComponent);
            item.fade.fadeProperty = "scale";
            item.fade.fadeValue = 2;
            let scaleAtChange = -1;
            item.radiusChanged.connect(() => scaleAtChange = item.scale);
            item.radius = 5;
            compare(item.radius, 0);
            tryCompare(item, "radius", 5);
            compare(scaleAtChange, 2);
            tryCompare(item, "scale", 0.6);
        }

        function test_fadeBehavior_changedWithinFade_returnsToOwnValue() {
            const item = make(fadeBehaviorComponent);
            item.fade.fadeProperty = "scale";
            item.fade.fadeValue = 0;
            item.fade.fadeDuration = 300;
            item.radius = 5;
            tryVerify(() => item.scale < 0.5);
            item.radius = 7;
            tryCompare(item, "radius", 7);
            tryCompare(item, "scale", 0.6);
        }

        function test_visibleBehavior_byDefault() {
            const item = make(visibleBehaviorComponent);
            compare(item.fade.fadeProperty, "opacity");
            compare(item.fade.fadeDuration, 200);
            compare(item.fade.fadeValue, 5);
        }

        function test_visibleBehavior_takesItsTimeOnOneSide() {
            const item = make(visibleBehaviorComponent);
            item.visible = false;
            compare(item.fade.exitAnimation.duration, 200);
            compare(item.fade.enterAnimation.duration, 0);
            compare(item.visible, true);
            tryCompare(item, "visible", false);
            item.visible = true;
            compare(item.fade.exitAnimation.duration, 0);
            compare(item.fade.enterAnimation.duration, 200);
            tryCompare(item, "visible", true);
            tryCompare(item, "opacity", 1);
        }

        function test_crossFade_byDefault() {
            const fade = make(crossFadeComponent).fade;
            compare(fade.fadeProperty, "opacity");
            compare(fade.fadeProperties, ["opacity"]);
            compare(fade.exitValue, 0);
            compare(fade.enterValue, 0);
            compare(fade.fadeDuration, 300);
            compare(fade.easingType, "Quad");
            compare(fade.delayWhile, false);
            compare(fade.sequential, false);
            fade.exitValue = 0.3;
            compare(fade.enterValue, 0.3);
            fade.fadeProperty = "scale";
            compare(fade.fadeProperties, ["scale"]);
        }

        function test_crossFade_showsOldLookLeavingAndNewOneComing() {
            const item = make(crossFadeComponent);
            item.fade.fadeDuration = 1500;
            item.color = "#0000ff";
            verify(Qt.colorEqual(item.color, "#ff0000"));
            compare(item.fade.animation.animations[1].duration, 5);
            tryVerify(() => Qt.colorEqual(item.color, "#0000ff"));
            tryVerify(() => snapshots().length === 2);
            const leaving = snapshots().find(picture => !picture.live);
            const coming = snapshots().find(picture => picture.live);
            for (const picture of [leaving, coming]) {
                compare(picture.hideSource, true);
                compare(picture.sourceItem, item);
                compare([picture.x, picture.y, picture.width, picture.height], [50, 50, 100, 100]);
            }
            verify(leaving.fade.running);
            verify(coming.fade.running);
            tryVerify(() => leaving.opacity < 0.7 && leaving.opacity > 0.2);
            const color = colorAt(100, 100);
            verify(color[0] > 20 && color[2] > 20, color);
            tryVerify(() => snapshots().length === 0);
            compare(colorAt(100, 100), [0, 0, 255]);
            compare(item.opacity, 1);
        }

        function test_crossFade_sequential_entersAfterExit() {
            const item = make(crossFadeComponent);
            item.fade.sequential = true;
            item.color = "#0000ff";
            tryVerify(() => snapshots().length === 2);
            const coming = snapshots().find(picture => picture.live);
            compare(coming.opacity, 0);
            verify(!coming.fade.running);
            tryVerify(() => snapshots().length === 1);
            verify(coming.fade.running);
            tryVerify(() => snapshots().length === 0);
        }

        function test_crossFade_delayed_waitsForRelease() {
            const item = make(crossFadeComponent);
            item.fade.delayWhile = true;
            item.color = "#0000ff";
            tryVerify(() => snapshots().length === 2);
            wait(100);
            for (const picture of snapshots())
                verify(!picture.fade.running);
            compare(colorAt(100, 100), [255, 0, 0]);
            item.fade.delayWhile = false;
            for (const picture of snapshots())
                verify(picture.fade.running);
            tryVerify(() => snapshots().length === 0);
            compare(colorAt(100, 100), [0, 0, 255]);
        }

        function test_crossFade_severalProperties_returnToTheirOwnValues() {
            const item = make(crossFadeComponent);
            item.opacity = 0.9;
            item.scale = 0.5;
            item.fade.fadeProperties = ["opacity", "scale"];
            item.fade.delayWhile = true;
            item.color = "#0000ff";
            tryVerify(() => snapshots().length === 2);
            const coming = snapshots().find(picture => picture.live);
            compare([coming.opacity, coming.scale], [0, 0]);
            const ends = Array.from(coming.fade.animations).map(step => [step.property, step.to]);
            compare(ends, [["opacity", 0.9], ["scale", 0.5]]);
            item.fade.delayWhile = false;
            tryVerify(() => snapshots().length === 0);
        }

        function test_crossFade_ownExitAnimation_isPlayed() {
            const item = make(crossFadeComponent);
            item.fade.exitAnimation = scaleAwayComponent;
            item.color = "#0000ff";
            tryVerify(() => snapshots().length === 2);
            const leaving = snapshots().find(picture => !picture.live);
            tryVerify(() => leaving.scale < 0.8);
            compare(leaving.opacity, 1);
            tryVerify(() => snapshots().length === 0);
        }

        function test_crossFade_changedAgainAtOnce_leavesNothingBehind() {
            const item = make(crossFadeComponent);
            item.color = "#00ff00";
            item.color = "#0000ff";
            tryVerify(() => Qt.colorEqual(item.color, "#0000ff"));
            tryVerify(() => snapshots().length === 0);
            compare(colorAt(100, 100), [0, 0, 255]);
        }
    }
}
