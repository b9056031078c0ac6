// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Item {
    id: root

    height: 200
    width: 300

    Component {
        id: displayComponent

        MyLcdNumber {
            x: 60
            y: 60
        }
    }

    SignalSpy {
        id: valueScale

        signalName: "scaleChanged"
    }

    SignalSpy {
        id: shadowScale

        signalName: "scaleChanged"
    }

    TestCase {
        property MyLcdNumber display: null

        function parts() {
            return Array.from(display.children).concat(Array.from(findChild(display, "digits").children));
        }

        function part(matches) {
            return parts().find(matches);
        }

        function valueText() {
            return part(child => child instanceof Text && child.font.pixelSize === 50);
        }

        function captionText() {
            return part(child => child instanceof Text && child.font.pixelSize === 18);
        }

        function shadowOf(source) {
            return part(child => child.source === source);
        }

        function box() {
            return part(child => child instanceof Rectangle);
        }

        // The smallest scale on the way to full size again. How long that takes by the clock says
        // little: a display without a refresh rate runs animations fast.
        function watchPulse(item) {
            const started = Date.now();
            let least = 1;
            while (Date.now() - started < 2000 && (least === 1 || item.scale < 1)) {
                wait(5);
                least = Math.min(least, item.scale);
            }
            return least;
        }

        name: "MyLcdNumber"
        when: windowShown

        function init() {
            testLog.clear();
            display = createTemporaryObject(displayComponent, root);
            valueScale.target = valueText();
            shadowScale.target = shadowOf(valueText());
            valueScale.clear();
            shadowScale.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_texts_areShownLetterByLetter() {
            compare(valueText().textFormat, Text.PlainText);
            compare(captionText().textFormat, Text.PlainText);
        }

        function test_properties_byDefault_data() {
            return [
                {tag: "lcdText", value: "Параметр"},
                {tag: "lcdData", value: "----"},
                {tag: "itemColor", value: "white"},
                {tag: "foo1", value: 0},
                {tag: "foo2", value: 0},
                {tag: "width", value: 150},
                {tag: "height", value: 60}
            ];
        }

        function test_properties_byDefault(row) {
            compare(display[row.tag], row.value);
        }

        function test_box_fillsItemInItsColor() {
            display.itemColor = "#eeeeee";
            compare(box().width, 150);
            compare(box().height, 60);
            compare(box().radius, 5);
            verify(Qt.colorEqual(box().color, "#eeeeee"));
        }

        function test_value_isCentredInSegmentFont() {
            display.lcdData = "1234";
            const value = valueText();
            compare(value.text, "1234");
            compare(value.font.family, fontDigital.font.family);
            verify(Qt.colorEqual(value.color, "black"));
            fuzzyCompare(value.x + value.width / 2, 75, 0.6);
            fuzzyCompare(value.y + value.height / 2, 30, 0.6);
            verify(value.width <= 150);
        }

        function test_caption_standsAboveBox() {
            display.lcdText = "Первый слой облаков (м)";
            const caption = captionText();
            compare(caption.text, "Первый слой облаков (м)");
            compare(caption.font.family, Qt.application.font.family);
            verify(Qt.colorEqual(caption.color, "black"));
            compare(caption.y, -35);
            fuzzyCompare(caption.x + caption.width / 2, 75, 0.6);
        }

        function test_shadows_data() {
            return [{tag: "box", source: () => box(), blur: 0.3},
                    {tag: "value", source: () => valueText(), blur: 0.1}];
        }

        function test_shadows(row) {
            const shadow = shadowOf(row.source());
            compare(shadow.shadowBlur, row.blur);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
            compare(shadow.width, row.source().width);
            compare(shadow.height, row.source().height);
        }

        function test_parts_standBackToFront() {
            const order = [shadowOf(box()), box(), valueText(), shadowOf(valueText())].map(
                item => parts().indexOf(item));
            compare(order, order.slice().sort((a, b) => a - b));
        }

        function test_change_pulsesValueAndShadow_data() {
            return [{tag: "longer", text: "12345"}, {tag: "same length", text: "1200"}];
        }

        function test_change_pulsesValueAndShadow(row) {
            display.lcdData = row.text;
            fuzzyCompare(watchPulse(valueText()), 0.5, 0.1);
            tryCompare(display, "foo1", 1);
            tryCompare(display, "foo2", 1);
            verify(shadowScale.count > 2);
            tryCompare(shadowOf(valueText()), "scale", 1);
        }

        function test_sameText_startsNoPulse() {
            display.lcdData = "----";
            wait(100);
            compare(valueScale.count, 0);
            compare(shadowScale.count, 0);
            compare(display.foo1, 0);
            compare(display.foo2, 0);
        }

        function test_changeWithinPulse_endsAtFullSize() {
            display.lcdData = "1000";
            wait(90);
            display.lcdData = "2000";
            wait(190);
            display.lcdData = "3000";
            compare(valueText().text, "3000");
            tryVerify(() => valueText().scale === 1 && shadowOf(valueText()).scale === 1
                            && display.foo1 > 0);
        }

        function test_accessibleName_tellsCaptionAndValue() {
            display.lcdText = "Первый слой";
            display.lcdData = "1500";
            compare(display.Accessible.name, "Первый слой: 1500");
            compare(display.Accessible.role, Accessible.StaticText);
        }
    }

    FontLoader {
        id: fontDigital

        source: "qrc:/settings/Fonts/DS-Digital/DS-DIGI.TTF"
    }
}
