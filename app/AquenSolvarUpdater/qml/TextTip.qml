// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Controls.Private 1.0 as Private

// Shows a text beside the pointer that rests on this area. Lets buttons and wheel through.
MouseArea {
    id: root

    property string text

    // Always read as mark-up, so that a name cannot insert its own.
    function _markUp() {
        return "<qt>" + text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/\n/g, "<br>");
    }

    acceptedButtons: Qt.NoButton
    hoverEnabled: true
    Accessible.ignored: true
    // Not when an item merely appears below the pointer.
    onPositionChanged: delay.restart()
    onExited: {
        delay.stop();
        Private.Tooltip.hideText();
    }

    // After the same time as the framework's own buttons.
    Timer {
        id: delay

        interval: 1000
        onTriggered: {
            if (root.text !== "")
                Private.Tooltip.showText(root, Qt.point(root.mouseX, root.mouseY), root._markUp());
        }
    }
}
