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

        About {
        }
    }

    SignalSpy {
        id: exits

        signalName: "exitAbout"
    }

    TestCase {
        property About panel: null

        function part(name) {
            return findChild(panel, name);
        }

        function show() {
            panel.visible = true;
            panel.requestActivate();
            tryVerify(() => panel.activeFocusItem !== null);
        }

        // In the inner panel's coordinates, which start 8 inside the window.
        function place(item) {
            const corner = item.mapToItem(null, 0, 0);
            return Qt.rect(corner.x - 8, corner.y - 8, item.width, item.height);
        }

        function overlap(a, b) {
            return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
        }

        name: "About"
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

        function test_window_asDesigned() {
            compare(panel.visible, false);
            compare(panel.title, "О нас...");
            verify(Qt.colorEqual(panel.color, "#b22222"));
        }

        function test_window_cannotBeResized() {
            for (const name of ["width", "minimumWidth", "maximumWidth"])
                compare(panel[name], 480);
            for (const name of ["height", "minimumHeight", "maximumHeight"])
                compare(panel[name], 320);
        }

        function test_geometry() {
            show();
            compare(place(part("logo")), Qt.rect(40, 20, 150, 150));
            compare(part("logo").fillMode, Image.Stretch);
            compare(part("logo").status, Image.Ready);
            const ratio = panel.Screen.devicePixelRatio;
            compare(part("logo").sourceSize, Qt.size(150 * ratio, 150 * ratio));
            compare(place(part("exitButton")), Qt.rect(464 - 12 - 95, 304 - 8 - 21, 95, 21));
            const title = place(part("title"));
            compare(title.y, 65);
            compare(title.x + title.width, 464 - 50);
        }

        function test_title_asDesigned() {
            const title = part("title");
            compare(title.text, "Терминал ОРК-2\n(Версия 2.2.4)\n");
            compare(title.font.pixelSize, 22);
            compare(title.font.bold, true);
            compare(title.horizontalAlignment, Text.AlignHCenter);
            verify(Qt.colorEqual(title.color, "black"));
        }

        function test_contacts_overlapNothing() {
            show();
            const texts = part("contacts").children;
            compare(texts.length, 4);
            for (let i = 0; i < texts.length; i++) {
                const text = place(texts[i]);
                verify(text.x >= 0 && text.x + text.width <= 464, texts[i].text);
                verify(text.y + text.height <= 304, texts[i].text);
                for (const name of ["logo", "exitButton"])
                    verify(!overlap(text, place(part(name))), texts[i].text + " on " + name);
                verify(text.y >= place(part("title")).y + place(part("title")).height, texts[i].text);
                compare(texts[i].font.bold, true);
                compare(texts[i].font.pixelSize, i === 0 ? 20 : 16);
                fuzzyCompare(text.x + text.width / 2, 232, 0.51);
            }
        }

        function test_logoShadow_fadesInOnce() {
            const shadow = part("logoShadow");
            verify(shadow.opacity < 0.5);
            compare(shadow.source, part("logo"));
            compare(shadow.shadowEnabled, true);
            compare(shadow.shadowBlur, 0.1);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
            compare(shadow.fade.duration, 5000);
            verify(shadow.fade.running);
            tryCompare(shadow, "opacity", 1, 15000);
            show();
            compare(shadow.opacity, 1);
            panel.close();
            show();
            compare(shadow.opacity, 1);
        }

        function test_links_open_data() {
            return [
                {tag: "webLink", url: "https://example.org"},
                {tag: "mailLink", url: "mailto:ork2@example.org"}
            ];
        }

        function test_links_open(row) {
            show();
            const link = part(row.tag);
            mouseClick(link);
            compare(testLog.openedUrls(), [row.url]);
            for (const key of [Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space]) {
                testLog.clear();
                link.forceActiveFocus(Qt.TabFocusReason);
                keyClick(key);
                compare(testLog.openedUrls(), [row.url]);
            }
        }

        function test_links_underPointer_showAHand() {
            show();
            for (const name of ["webLink", "mailLink"]) {
                const pointer = findChild(part(name), "pointer");
                mouseMove(part(name), 5, 5);
                tryCompare(pointer, "hovered", true);
                compare(pointer.cursorShape, Qt.PointingHandCursor);
                verify(part(name).font.underline);
            }
            mouseMove(panel.contentItem, 20, 300);
            tryVerify(() => !part("webLink").font.underline);
        }

        function test_exitButton_clicked_tellsExit() {
            show();
            mouseClick(part("exitButton"));
            compare(exits.count, 1);
            compare(panel.visible, true);
        }

        function test_keyboard_tabsInReadingOrder() {
            show();
            for (const name of ["webLink", "mailLink", "exitButton"]) {
                keyClick(Qt.Key_Tab);
                verify(part(name).activeFocus, name);
            }
            verify(part("exitButton").visualFocus);
            keyClick(Qt.Key_Space);
            compare(exits.count, 1);
        }

        function test_escape_closesWithoutExit() {
            show();
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
            compare(exits.count, 0);
        }
    }
}
