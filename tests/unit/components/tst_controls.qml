// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml"

// The card of a unit and the shared components: what in them can go wrong.
Item {
    id: page

    width: 560
    height: 300

    DeviceInfoContents { id: card; width: page.width }
    ProgressBar { id: bar; y: 100; width: 400; height: 30 }
    Placeholder { id: left; width: 50 }
    Placeholder { id: right; width: 70 }
    Rectangle { id: red }
    Rectangle { id: green }
    ThreeCircleLoadingIndicator { id: dots; y: 200; speed: 100 }

    TestCase {
        name: "Controls"
        when: windowShown

        SignalSpy { id: requests; target: card; signalName: "requestUpdate" }

        function test_card_data() {
            return [
                { tag: "washing unit", type: 0, needsUpdate: true, icon: "qrc:/icons/aquen", name: "Aquen" },
                { tag: "its bootloader", type: 1, needsUpdate: true, icon: "qrc:/icons/aquen", name: "Aquen" },
                { tag: "curing unit", type: 2, needsUpdate: false, icon: "qrc:/icons/solvar", name: "Solvar" },
                { tag: "its bootloader", type: 3, needsUpdate: true, icon: "qrc:/icons/solvar", name: "Solvar" },
                { tag: "unknown", type: 4, needsUpdate: false, icon: "", name: "Unknown Device Type" },
                { tag: "none", type: -1, needsUpdate: false, icon: "", name: "Unknown Device Type" }
            ];
        }

        function test_card(row) {
            var isDfu = row.type === 1 || row.type === 3;
            var serialName = row.type < 0 ? "" : "<b>\u0001\n\u2028</b>";
            card.device = row.type < 0 ? null : { deviceType: row.type, isDfu: isDfu, serialName: serialName,
                                                  needsUpdate: row.needsUpdate };
            var image = findChild(card, "deviceImage");
            var name = findChild(card, "serialNameText");
            var button = findChild(card, "updateButton");
            compare([String(image.source), image.status], [row.icon, row.icon ? Image.Ready : Image.Null]);
            compare(findChild(card, "deviceTypeText").text, row.name);
            compare([name.text, name.textFormat, name.lineCount],
                    [serialName && "<b>   </b>", Text.PlainText, 1]);
            compare(findChild(card, "upToDateText").visible, row.type >= 0 && !row.needsUpdate);
            compare([button.text, button.enabled], [isDfu ? "Resume Update" : "Update Firmware", row.needsUpdate]);
            requests.clear();
            mouseClick(button);
            compare(requests.count, row.needsUpdate ? 1 : 0);
            compare(requests.count && requests.signalArguments[0][0].deviceType, requests.count && row.type);
        }

        function test_long_name_leaves_room_for_the_button() {
            if (Qt.platform.os === "windows")
                skip("Under Wine one run in ten keeps a first layout that is too wide.");
            card.device = { serialName: "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW", needsUpdate: true };
            var button = findChild(card, "updateButton");
            tryVerify(function() { return button.mapToItem(page, button.width, 0).x <= page.width - 10; });
        }

        function test_progress_grows_and_drops_at_once() {
            var fill = findChild(bar, "progressBarFill");
            // The software renderer draws no masks; the bar must not vanish with them.
            compare(fill.visible, GraphicsInfo.api === GraphicsInfo.Software);
            bar.percentage = 0.8;
            verify(bar.visiblePercentage < 0.8);
            tryCompare(fill, "width", 320);
            bar.percentage = 0.25;
            compare(fill.width, 100);
        }

        function test_placeholders_swap() {
            for (var round = 0; round < 2; ++round) {
                left.contentItem = red;
                right.contentItem = green;
                compare([red.parent, green.parent, red.width, green.width], [left, right, 50, 70]);
                left.contentItem = green;
                right.contentItem = red;
                compare([red.parent, green.parent, red.width, green.width], [right, left, 70, 50]);
            }
            left.contentItem = null;
            compare(green.parent, null);
        }

        function test_dots_travel() {
            [0, 1, 2, 0].forEach(function(dark) {
                tryVerify(function() {
                    var reds = [0, 1, 2].map(function(i) { return dots.children[i].color.r; });
                    return reds.indexOf(Math.min.apply(null, reds)) === dark;
                });
            });
            dots.visible = false;
            var still = String(dots.children[0].color);
            wait(2 * dots.speed);
            compare(String(dots.children[0].color), still);
        }
    }
}
