// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Item {
    id: root

    height: 200
    width: 300

    Component {
        id: buttonComponent

        MyButton {
            text: "Запуск"
            x: 20
            y: 20
        }
    }

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    TestCase {
        property MyButton button: null

        function label() {
            return button.contentItem;
        }

        function hover() {
            mouseMove(button, 30, 10);
            tryCompare(button, "hovered", true);
        }

        function leave() {
            mouseMove(root, 290, 190);
            tryCompare(button, "hovered", false);
        }

        name: "MyButton"
        when: windowShown

        function init() {
            testLog.clear();
            button = createTemporaryObject(buttonComponent, root);
            leave();
            clicks.target = button;
            clicks.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_size_byDefault_is92By23() {
            compare(button.width, 92);
            compare(button.height, 23);
            compare(button.background.implicitWidth, 92);
            compare(button.background.implicitHeight, 23);
        }

        function test_size_withLongText_stays() {
            button.text = "Очень длинная надпись на кнопке";
            compare(button.width, 92);
            compare(button.height, 23);
            verify(label().truncated);
        }

        function test_size_withWidthSet_backgroundFollows() {
            button.width = 150;
            compare(button.background.width, 150);
            compare(button.background.implicitWidth, 92);
        }

        function test_label_atRest_isPlainAndCentred() {
            compare(label().text, "Запуск");
            compare(label().font.family, fontPalantino.font.family);
            compare(label().font.pointSize, button.font.pointSize);
            compare(label().font.bold, false);
            compare(label().horizontalAlignment, Text.AlignHCenter);
            compare(label().verticalAlignment, Text.AlignVCenter);
            compare(label().elide, Text.ElideRight);
            compare(label().opacity, 1);
            verify(Qt.colorEqual(label().color, "black"));
        }

        function test_label_withPointSizeSet_follows() {
            button.font.pointSize = 11;
            compare(label().font.pointSize, 11);
        }

        function test_background_atRest_isTransparentWithBorder() {
            compare(button.background.radius, 3);
            compare(button.background.border.width, 1);
            compare(button.background.opacity, 1);
            verify(Qt.colorEqual(button.background.color, "transparent"));
        }

        function test_colors_whileHovered_areWhiteOnGrey() {
            hover();
            verify(Qt.colorEqual(label().color, "#ffffff"));
            verify(Qt.colorEqual(button.background.color, "#5E5F60"));
            leave();
            verify(Qt.colorEqual(label().color, "black"));
            verify(Qt.colorEqual(button.background.color, "transparent"));
        }

        function test_label_whilePressedUnderPointer_isWhiteAndBold() {
            hover();
            mousePress(button, 30, 10);
            verify(button.pressed);
            verify(button.hovered);
            verify(Qt.colorEqual(label().color, "#ffffff"));
            compare(label().font.bold, true);
            mouseRelease(button, 30, 10);
            compare(label().font.bold, false);
            compare(clicks.count, 1);
        }

        function test_label_whilePressedByKey_isRedAndBold() {
            button.forceActiveFocus();
            keyPress(Qt.Key_Space);
            verify(button.pressed);
            verify(Qt.colorEqual(label().color, "#fa4444"));
            compare(label().font.bold, true);
            keyRelease(Qt.Key_Space);
            verify(Qt.colorEqual(label().color, "black"));
            compare(clicks.count, 1);
        }

        function test_disabled_isFaintAndTransparent_data() {
            return [{tag: "away", over: false}, {tag: "hovered", over: true}];
        }

        function test_disabled_isFaintAndTransparent(row) {
            if (row.over)
                hover();
            button.enabled = false;
            if (row.over)
                mouseMove(button, 40, 12);
            compare(label().opacity, 0.3);
            compare(button.background.opacity, 0.3);
            verify(Qt.colorEqual(button.background.color, "transparent"));
            mouseClick(button, 30, 10);
            compare(clicks.count, 0);
        }

        function test_disabled_keepsLastColor() {
            hover();
            button.enabled = false;
            leave();
            verify(Qt.colorEqual(label().color, "#ffffff"));
            button.enabled = true;
            verify(Qt.colorEqual(label().color, "black"));
        }

        function test_enterKeys_press_data() {
            return [{tag: "return", key: Qt.Key_Return}, {tag: "enter", key: Qt.Key_Enter},
                    {tag: "space", key: Qt.Key_Space}];
        }

        function test_enterKeys_press(row) {
            button.forceActiveFocus();
            keyClick(row.key);
            compare(clicks.count, 1);
            compare(button.checked, false);
        }

        function test_enterKeys_heldDown_pressOnce() {
            button.pressByKey({isAutoRepeat: false});
            button.pressByKey({isAutoRepeat: true});
            compare(clicks.count, 1);
        }

        function test_enterKeys_onCheckable_toggle(row) {
            button.checkable = true;
            button.forceActiveFocus();
            keyClick(row.key);
            compare(clicks.count, 1);
            compare(button.checked, true);
            keyClick(row.key);
            compare(button.checked, false);
        }

        function test_enterKeys_onCheckable_toggle_data() {
            return test_enterKeys_press_data();
        }

        function test_focus_byTab_isVisible() {
            compare(button.focusPolicy, Qt.StrongFocus);
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(button.visualFocus);
            compare(button.background.border.width, 2);
            verify(Qt.colorEqual(button.background.border.color, "#b22222"));
            root.forceActiveFocus();
            mouseClick(button, 30, 10);
            verify(button.activeFocus);
            compare(button.background.border.width, 1);
        }

        function test_accessibleName_withLineBreaks_isOneLine() {
            button.text = "Настройки\n подключения\n к прибору";
            compare(button.Accessible.name, "Настройки подключения к прибору");
            compare(button.Accessible.role, Accessible.Button);
        }
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }
}
