// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Item {
    id: root

    height: 100
    width: 100

    Component {
        id: windowComponent

        SqlSettings {
        }
    }

    SignalSpy {
        id: exits

        signalName: "exitSqlSettings"
    }

    TestCase {
        property SqlSettings panel: null

        name: "SqlSettings"
        when: windowShown

        function init() {
            testLog.clear();
            panel = createTemporaryObject(windowComponent, root);
            exits.target = panel;
            exits.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function show() {
            panel.visible = true;
            panel.requestActivate();
            tryVerify(() => panel.activeFocusItem !== null);
        }

        function test_window_asDesigned() {
            compare(panel.visible, false);
            compare(panel.width, 480);
            compare(panel.height, 420);
            compare(panel.modality, Qt.WindowModal);
            compare(panel.title, "Параметры SQL сервера");
            verify(Qt.colorEqual(panel.color, "#efefef"));
        }

        function test_exitButton_standsInTheCorner() {
            show();
            const button = findChild(panel, "exitButton");
            compare(button.text, "Выход");
            compare(button.width, 95);
            compare(button.height, 21);
            const corner = button.mapToItem(null, button.width, button.height);
            compare(corner, Qt.point(480 - 8 - 12, 420 - 8 - 8));
        }

        function test_exitButton_clicked_tellsExit() {
            show();
            mouseClick(findChild(panel, "exitButton"));
            compare(exits.count, 1);
            compare(panel.visible, true);
        }

        function test_keyboard_reachesTheButton() {
            show();
            keyClick(Qt.Key_Tab);
            verify(findChild(panel, "exitButton").visualFocus);
            keyClick(Qt.Key_Space);
            compare(exits.count, 1);
            keyClick(Qt.Key_Return);
            compare(exits.count, 2);
        }

        function test_escape_closesWithoutExit() {
            show();
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
            compare(exits.count, 0);
        }
    }
}
