import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml"

// The contrasts that docs/accessibility.md states, from the colours as they are (WCAG 2.1, 1.4.3 and
// 1.4.11).
TestCase {
    name: "Contrast"

    function linear(part) {
        return part <= 0.03928 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
    }

    function luminance(c) {
        return 0.2126 * linear(c.r) + 0.7152 * linear(c.g) + 0.0722 * linear(c.b);
    }

    function contrast(one, other) {
        var high = Math.max(luminance(one), luminance(other));
        var low = Math.min(luminance(one), luminance(other));
        return (high + 0.05) / (low + 0.05);
    }

    function above(top, opacity, bottom) {
        return Qt.rgba(top.r * opacity + bottom.r * (1 - opacity), top.g * opacity + bottom.g * (1 - opacity),
                       top.b * opacity + bottom.b * (1 - opacity), 1);
    }

    function test_contrast_data() {
        var disabledGround = above(Style.primaryColor, 0.5, Style.lightAccentColor);
        return [
            { tag: "name, kind and state on a card", text: Style.mutedColor,
              ground: Style.lightAccentColor, stated: 2.9 },
            { tag: "headings, search", text: Style.mutedColor, ground: Style.inverseColor, stated: 3.0 },
            { tag: "Connected", text: Style.primaryColor, ground: Style.lightAccentColor, stated: 2.5 },
            { tag: "button, bar", text: Style.inverseColor, ground: Style.primaryColor, stated: 2.6 },
            { tag: "pressed button", text: Style.inverseColor,
              ground: Style.pressedColor(Style.primaryColor), stated: 2.2 },
            { tag: "disabled button", text: above(Style.inverseColor, 0.8, disabledGround),
              ground: disabledGround, stated: 1.5 },
            { tag: "bar, not filled", text: Style.inverseColor, ground: Style.darkColor, stated: 12.7 },
            { tag: "Quit", text: Style.darkColor, ground: Style.inverseColor, stated: 12.7 },
            { tag: "pressed Quit", text: Style.darkColor,
              ground: Style.pressedColor(Style.inverseColor), stated: 11.9 },
            { tag: "focus frame", text: Style.darkColor, ground: Style.lightAccentColor, stated: 12.2 }
        ];
    }

    function test_contrast(row) {
        compare(contrast(row.text, row.ground).toFixed(1), row.stated.toFixed(1));
    }
}
