import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml"

Item {
    id: page

    width: 560
    height: 200

    DeviceInfoContents {
        id: card

        width: parent.width
    }

    SignalSpy {
        id: requests

        target: card
        signalName: "requestUpdate"
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
        name: "DeviceInfoContents"
        when: windowShown

        function unit(type, isDfu, needsUpdate, serialName) {
            return { deviceType: type, isDfu: isDfu, needsUpdate: needsUpdate, serialName: serialName };
        }

        function test_kinds_data() {
            return [
                { tag: "washing unit", device: unit(0, false, true, "a"), icon: "qrc:/icons/aquen",
                  type: "Aquen", button: "Update Firmware" },
                { tag: "washing bootloader", device: unit(1, true, true, "a"), icon: "qrc:/icons/aquen",
                  type: "Aquen", button: "Resume Update" },
                { tag: "curing unit", device: unit(2, false, false, "a"), icon: "qrc:/icons/solvar",
                  type: "Solvar", button: "Update Firmware" },
                { tag: "curing bootloader", device: unit(3, true, true, "a"), icon: "qrc:/icons/solvar",
                  type: "Solvar", button: "Resume Update" },
                { tag: "unknown", device: unit(4, false, false, "a"), icon: "",
                  type: "Unknown Device Type", button: "Update Firmware" },
                { tag: "none", device: null, icon: "",
                  type: "Unknown Device Type", button: "Update Firmware" }
            ];
        }

        function test_kinds(row) {
            card.device = row.device;
            var needsUpdate = !!row.device && row.device.needsUpdate;
            var image = page.find(card, "deviceImage");
            var button = page.find(card, "updateButton");
            compare(image.source, row.icon);
            compare(image.status, row.icon ? Image.Ready : Image.Null);
            compare(page.find(card, "deviceTypeText").text, row.type);
            compare(page.find(card, "serialNameText").text, row.device ? "a" : "");
            compare(page.find(card, "upToDateText").visible, !!row.device && !needsUpdate);
            compare(button.text, row.button);
            compare(button.enabled, needsUpdate);
            requests.clear();
            mouseClick(button);
            compare(requests.count, needsUpdate ? 1 : 0);
            if (needsUpdate)
                compare(requests.signalArguments[0][0].deviceType, row.device.deviceType);
            compare(card.implicitHeight, 80);
        }

        // A name comes from the unit: of any length, and no mark-up.
        function test_hostile_names() {
            card.device = unit(0, false, true, "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW");
            var button = page.find(card, "updateButton");
            tryVerify(function() {
                return button.mapToItem(page, button.width, 0).x <= page.width - 10;
            });
            verify(page.find(card, "serialNameText").truncated);
            card.device = unit(0, false, true, "<b>bold</b>");
            compare(page.find(card, "serialNameText").textFormat, Text.PlainText);
        }
    }
}
