// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Rectangle {
    id: root

    color: "#eeeeee"
    height: 160
    width: 160

    Rectangle {
        id: square

        color: "black"
        height: 40
        visible: false
        width: 40
        x: 60
        y: 60
    }

    Component {
        id: shadowComponent

        SoftShadow {
            anchors.fill: square
            source: square
        }
    }

    TestCase {
        property SoftShadow shadow: null

        function gray(x, y) {
            return grabImage(root).red(x, y);
        }

        name: "SoftShadow"
        when: windowShown

        function init() {
            testLog.clear();
            shadow = createTemporaryObject(shadowComponent, root);
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_defaults() {
            compare(shadow.shadowBlur, 0.8);
            compare(shadow.blurMax, 32);
            compare(shadow.strength, 1);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
        }

        function test_source_isNotDrawn() {
            shadow.shadowBlur = 0.1;
            const picture = grabImage(root);
            for (let y = 40; y < 120; y++) {
                for (let x = 40; x < 120; x++)
                    verify(picture.red(x, y) > 150, x + ", " + y);
            }
        }

        // A light shadow on a light panel has a dark rim: without it nothing would be seen.
        function test_lightShadow_onLightGround_isSeen() {
            tryVerify(() => gray(80, 103) < 225);
            compare(gray(80, 150), 0xee);
        }

        function test_offset_movesShadow_data() {
            return [{tag: "right", x: 12, y: 0}, {tag: "up", x: 0, y: -12}];
        }

        function test_offset_movesShadow(row) {
            shadow.shadowColor = "black";
            shadow.shadowBlur = 0.1;
            shadow.shadowHorizontalOffset = row.x;
            shadow.shadowVerticalOffset = row.y;
            const picture = grabImage(root);
            verify(picture.red(80 + 2 * row.x, 80 + 2 * row.y) < 40);
            verify(picture.red(80 - 20 * Math.sign(row.x) + row.x / 3, 80 - 20 * Math.sign(row.y) + row.y / 3) > 200);
        }

        function test_blur_reachesOutwards_data() {
            return [{tag: "by shadowBlur", name: "shadowBlur", less: 0.2, more: 0.8},
                    {tag: "by blurMax", name: "blurMax", less: 8, more: 32}];
        }

        function test_blur_reachesOutwards(row) {
            shadow.shadowColor = "black";
            shadow[row.name] = row.less;
            verify(gray(80, 108) > 230);
            shadow[row.name] = row.more;
            verify(gray(80, 108) < 220);
        }

        function test_strength_darkens() {
            shadow.shadowColor = "black";
            const once = gray(80, 106);
            shadow.strength = 2;
            verify(gray(80, 106) < once - 20);
        }
    }
}
