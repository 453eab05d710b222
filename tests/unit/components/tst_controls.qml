import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml"

// The shared components: what in them can go wrong.
Item {
    id: page

    width: 600
    height: 400

    BaseButton {
        id: button

        text: "Press"
    }
    BaseButton {
        id: shortButton

        y: 50
        text: "i"
    }
    BaseText {
        id: label

        text: button.text
    }
    ProgressBar {
        id: bar

        y: 100
        width: 400
        height: 30
    }
    Placeholder {
        id: left

        y: 150
        width: 50
        height: 40
    }
    Placeholder {
        id: right

        y: 200
        width: 70
        height: 60
    }
    Rectangle {
        id: red
    }
    Rectangle {
        id: green
    }
    ThreeCircleLoadingIndicator {
        id: dots

        y: 300
        speed: 100
    }

    SignalSpy {
        id: clicks

        target: button
        signalName: "clicked"
    }

    function find(item, name) {
        if (item.objectName === name)
            return item;
        for (var i = 0; i < item.children.length; ++i) {
            var found = find(item.children[i], name);
            if (found)
                return found;
        }
        return null;
    }

    TestCase {
        name: "Style"

        function test_sizes() {
            compare([Style.baseGridSize, Style.smallGridSize, Style.tinyGridSize, Style.mediumGridSize,
                     Style.bigGridSize, Style.largeGridSize, Style.hugeGridSize, Style.enormousGridSize,
                     Style.heroGridSize], [10, 5, 2, 20, 30, 40, 50, 60, 70]);
        }

        function test_colours() {
            verify(Style.isInverse("#ffffff"));
            verify(!Style.isInverse("#fffffe"));
            compare(Style.accentColor("#fafafa"), Qt.darker("#fafafa", 1.15));
            compare(Style.pressedColor("#26a9f2"), Qt.lighter("#26a9f2", 1.15));
            compare(Style.pressedColor("white"), Qt.darker("white", 1.03));
        }
    }

    TestCase {
        name: "BaseButton"
        when: windowShown

        function init() {
            button.enabled = true;
            button.forceActiveFocus();
            clicks.clear();
        }

        function test_keys_data() {
            return [
                { tag: "Return", key: Qt.Key_Return, enabled: true, clicks: 1 },
                { tag: "Enter", key: Qt.Key_Enter, enabled: true, clicks: 1 },
                { tag: "Space", key: Qt.Key_Space, enabled: true, clicks: 1 },
                { tag: "Escape", key: Qt.Key_Escape, enabled: true, clicks: 0 },
                { tag: "Return, disabled", key: Qt.Key_Return, enabled: false, clicks: 0 },
                { tag: "Enter, disabled", key: Qt.Key_Enter, enabled: false, clicks: 0 }
            ];
        }

        function test_keys(row) {
            button.enabled = row.enabled;
            keyClick(row.key);
            compare(clicks.count, row.clicks);
        }

        function test_press_takes_focus() {
            shortButton.forceActiveFocus();
            mouseClick(button);
            verify(button.activeFocus);
            compare(clicks.count, 1);
        }

        function test_tab() {
            keyClick(Qt.Key_Tab);
            verify(shortButton.activeFocus);
        }

        function test_size() {
            compare(button.implicitHeight, label.implicitHeight + 10);
            compare(button.implicitWidth, Math.max(label.implicitWidth + 20, 3 * button.implicitHeight));
            compare(shortButton.implicitWidth, 3 * shortButton.implicitHeight);
            button.text = "A text that is wider than three heights";
            tryCompare(button, "implicitWidth", label.implicitWidth + 20);
            button.text = "Press";
        }
    }

    TestCase {
        name: "ProgressBar"
        when: windowShown

        function init() {
            bar.percentage = 0;
            tryCompare(bar, "animatedPercentage", 0);
        }

        function test_jump_grows() {
            var start = Date.now();
            bar.percentage = 1;
            verify(bar.visiblePercentage < 1, "drawn at once");
            tryCompare(bar, "visiblePercentage", 1);
            verify(Date.now() - start >= 90, "too fast: " + (Date.now() - start));
        }

        function test_drop_shows_at_once() {
            bar.percentage = 0.8;
            tryCompare(bar, "visiblePercentage", 0.8);
            bar.percentage = 0.25;
            compare(bar.visiblePercentage, 0.25);
            verify(bar.animatedPercentage > 0.25);
            compare(page.find(bar, "progressBarFill").width, 100);
        }

        // The software renderer draws no masks; the bar must not vanish with them.
        function test_is_drawn() {
            compare(page.find(bar, "progressBarFill").visible, GraphicsInfo.api === GraphicsInfo.Software);
        }
    }

    TestCase {
        name: "Placeholder"
        when: windowShown

        function test_swap() {
            left.contentItem = red;
            right.contentItem = green;
            for (var round = 0; round < 2; ++round) {
                left.contentItem = green;
                right.contentItem = red;
                compare([red.parent, green.parent], [right, left]);
                compare([red.width, red.height, green.width], [70, 60, 50]);
                left.contentItem = red;
                right.contentItem = green;
                compare([red.parent, green.parent], [left, right]);
            }
            left.contentItem = null;
            compare(red.parent, null);
            compare(left.children.length, 0);
        }
    }

    TestCase {
        name: "ThreeCircleLoadingIndicator"
        when: windowShown

        function darkest() {
            var reds = [0, 1, 2].map(function(i) { return dots.children[i].color.r; });
            return reds.indexOf(Math.min.apply(null, reds));
        }

        function test_travels() {
            compare(dots.implicitWidth, 3 * 5 + 2 * 10);
            [1, 2, 0, 1].forEach(function(circle) {
                tryVerify(function() { return darkest() === circle; }, 5000);
            });
            dots.visible = false;
            var still = String(dots.children[0].color);
            wait(2 * dots.speed);
            compare(String(dots.children[0].color), still);
        }
    }
}
