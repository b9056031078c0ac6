// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Effects
import QtTest

// Valid for the replacement and for Qt's effect.
Item {
    id: root

    readonly property color ink: "#804020"

    height: 200
    width: 200

    Rectangle {
        anchors.fill: parent
        color: "#eeeeee"
    }

    Component {
        id: siblingComponent

        Item {
            readonly property alias effect: siblingEffect

            anchors.fill: parent

            Rectangle {
                id: square

                color: root.ink
                height: 80
                width: 80
                x: 60
                y: 60
            }

            MultiEffect {
                id: siblingEffect

                anchors.fill: square
                source: square
            }
        }
    }

    Component {
        id: layerComponent

        Item {
            id: holder

            property MultiEffect effect: null

            anchors.fill: parent

            Rectangle {
                color: root.ink
                height: 80
                layer.effect: MultiEffect {
                    Component.onCompleted: holder.effect = this
                }
                layer.enabled: true
                width: 80
                x: 60
                y: 60
            }
        }
    }

    TestCase {
        property var picture: null

        function makeEffect(way) {
            const component = way === "layer" ? layerComponent : siblingComponent;
            const effect = createTemporaryObject(component, root).effect;
            verify(effect);
            return effect;
        }

        function take() {
            waitForRendering(root);
            wait(50);
            picture = grabImage(root);
        }

        // The picture has the screen's pixels, the tests count in the window's.
        function colorAt(x, y) {
            const ratio = root.Screen.devicePixelRatio;
            const column = Math.floor((x + 0.5) * ratio);
            const row = Math.floor((y + 0.5) * ratio);
            return [picture.red(column, row), picture.green(column, row),
                    picture.blue(column, row)];
        }

        function redAt(x, y) {
            return colorAt(x, y)[0];
        }

        function compareColor(x, y, red, green, blue) {
            const found = colorAt(x, y);
            const asked = [red, green, blue];
            verify(found.every((value, i) => Math.abs(value - asked[i]) <= 2),
                   "at " + x + "," + y + ": " + found + " instead of " + asked);
        }

        // Lets the effect draw beyond its source, though nothing is to be seen there.
        function makeRoom(effect) {
            if (effect.source.color)
                effect.source.visible = false;
            effect.shadowEnabled = true;
            effect.shadowOpacity = 0;
        }

        function ways() {
            return [{tag: "sibling"}, {tag: "layer"}];
        }

        name: "MultiEffect"
        when: windowShown

        function init() {
            testLog.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_nothingEnabled_drawsSource_data() {
            return ways();
        }

        function test_nothingEnabled_drawsSource(row) {
            makeEffect(row.tag);
            take();
            for (const at of [[60, 60], [100, 100], [139, 139]])
                compareColor(at[0], at[1], 0x80, 0x40, 0x20);
            for (const at of [[59, 60], [60, 59], [140, 139], [139, 140]])
                compareColor(at[0], at[1], 0xee, 0xee, 0xee);
        }

        function test_sharpShadow_standsAtOffset_data() {
            return ways();
        }

        function test_sharpShadow_standsAtOffset(row) {
            const effect = makeEffect(row.tag);
            effect.shadowEnabled = true;
            effect.shadowBlur = 0;
            effect.shadowColor = "#ff8040";
            effect.shadowHorizontalOffset = 10;
            effect.shadowVerticalOffset = 6;
            take();
            compareColor(100, 100, 0x80, 0x40, 0x20);
            compareColor(145, 100, 0xff, 0x80, 0x40);
            compareColor(100, 143, 0xff, 0x80, 0x40);
            compareColor(155, 100, 0xee, 0xee, 0xee);
            compareColor(100, 150, 0xee, 0xee, 0xee);
            compareColor(55, 100, 0xee, 0xee, 0xee);
        }

        function test_shadowOpacity_weakensShadow_data() {
            return ways();
        }

        function test_shadowOpacity_weakensShadow(row) {
            const effect = makeEffect(row.tag);
            effect.shadowEnabled = true;
            effect.shadowBlur = 0;
            effect.shadowColor = "#000000";
            effect.shadowHorizontalOffset = 10;
            effect.shadowOpacity = 0.5;
            take();
            compareColor(145, 100, 119, 119, 119);
            effect.shadowOpacity = 0;
            take();
            compareColor(145, 100, 0xee, 0xee, 0xee);
        }

        function test_blurredShadow_fadesOutwards_data() {
            return ways();
        }

        function test_blurredShadow_fadesOutwards(row) {
            const effect = makeEffect(row.tag);
            effect.shadowEnabled = true;
            effect.shadowBlur = 0.5;
            effect.shadowColor = "#000000";
            take();
            compareColor(100, 100, 0x80, 0x40, 0x20);
            const near = redAt(142, 100);
            const middle = redAt(147, 100);
            verify(near < middle && middle < 0xee, near + ", " + middle);
            compareColor(175, 100, 0xee, 0xee, 0xee);
        }

        // The rim of such a shadow is what sets the documents' parts off their light panels.
        function test_lightShadow_onLightGround_isSeen_data() {
            return ways();
        }

        function test_lightShadow_onLightGround_isSeen(row) {
            const effect = makeEffect(row.tag);
            if (String(effect).startsWith("QQuickMultiEffect"))
                skip("Qt 6.8 draws such a shadow in its colour, without a rim");
            effect.shadowEnabled = true;
            effect.shadowBlur = 0.8;
            effect.shadowColor = "#eeeeee";
            effect.shadowHorizontalOffset = 1;
            effect.shadowVerticalOffset = 1;
            take();
            verify(redAt(145, 100) < 0xee - 20, "is " + redAt(145, 100));
        }

        function test_shadowScale_growsShadowRoundCentre_data() {
            return ways();
        }

        function test_shadowScale_growsShadowRoundCentre(row) {
            const effect = makeEffect(row.tag);
            effect.shadowEnabled = true;
            effect.shadowBlur = 0;
            effect.shadowColor = "#0000ff";
            effect.shadowScale = 1.25;
            take();
            for (const at of [[54, 100], [146, 100], [100, 54], [100, 146]])
                compareColor(at[0], at[1], 0, 0, 255);
            for (const at of [[46, 100], [153, 100], [100, 46], [100, 153]])
                compareColor(at[0], at[1], 0xee, 0xee, 0xee);
        }

        function test_brightness_addsToEachChannel_data() {
            return ways();
        }

        function test_brightness_addsToEachChannel(row) {
            const effect = makeEffect(row.tag);
            effect.brightness = 0.25;
            makeRoom(effect);
            take();
            compareColor(100, 100, 0x80 + 64, 0x40 + 64, 0x20 + 64);
            compareColor(150, 100, 0xee, 0xee, 0xee);
        }

        function test_saturation_movesAwayFromGrey_data() {
            return [
                {tag: "sibling", saturation: -1},
                {tag: "layer", saturation: -1},
                {tag: "sibling, more", saturation: 0.2},
                {tag: "layer, more", saturation: 0.2}
            ];
        }

        function test_saturation_movesAwayFromGrey(row) {
            const effect = makeEffect(row.tag.split(",")[0]);
            effect.saturation = row.saturation;
            take();
            const grey = 0.299 * 0x80 + 0.587 * 0x40 + 0.114 * 0x20;
            const expected = [0x80, 0x40, 0x20].map(
                value => Math.max(0, grey + (value - grey) * (1 + row.saturation)));
            compareColor(100, 100, expected[0], expected[1], expected[2]);
        }

        function test_blur_softensEdge_data() {
            return ways();
        }

        function test_blur_softensEdge(row) {
            // Alone, without the sharp source beneath it.
            const effect = makeEffect(row.tag);
            if (row.tag === "sibling")
                effect.source.visible = false;
            effect.blurEnabled = true;
            effect.blurMax = 30;
            effect.blur = 0.5;
            take();
            const inside = redAt(137, 100);
            const outside = redAt(142, 100);
            verify(inside > 0x80 + 10, "inside " + inside);
            verify(outside > inside && outside < 0xee - 10, "outside " + outside);
            compareColor(100, 100, 0x80, 0x40, 0x20);
        }

        function test_blurAmount_withBlurringOff_doesNothing_data() {
            return ways();
        }

        function test_blurAmount_withBlurringOff_doesNothing(row) {
            const effect = makeEffect(row.tag);
            effect.blur = 0.5;
            makeRoom(effect);
            take();
            compareColor(139, 100, 0x80, 0x40, 0x20);
            compareColor(141, 100, 0xee, 0xee, 0xee);
        }

        function test_sourceChange_isFollowed() {
            const effect = makeEffect("sibling");
            effect.shadowEnabled = true;
            take();
            effect.source.color = "#00ff00";
            take();
            compareColor(100, 100, 0, 255, 0);
        }

        function test_opacity_fadesShadowAndPicture() {
            const effect = makeEffect("sibling");
            effect.source.visible = false;
            effect.opacity = 0.5;
            take();
            compareColor(100, 100, (0x80 + 0xee) / 2, (0x40 + 0xee) / 2, (0x20 + 0xee) / 2);
        }

        function test_withoutSource_drawsNothing() {
            const effect = makeEffect("sibling");
            effect.source.visible = false;
            effect.source = null;
            take();
            compareColor(100, 100, 0xee, 0xee, 0xee);
        }
    }
}
