// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Layouts 1.3
import "."

RowLayout {
    id: root

    property real radius: 2.5
    property int speed: 400 // milliseconds per step
    property color activeColor: Style.semiDarkColor
    property color inactiveColor: Style.accentColor(Style.lightColor)

    property real _step: 0 // 0 to 3: the place of the active colour

    // A circle takes the active colour over from the one before it and hands it to the next one.
    function _colorOf(circle) {
        var distance = Math.abs(_step - circle);
        var share = Math.max(0, 1 - Math.min(distance, 3 - distance));
        return Qt.rgba(inactiveColor.r + share * (activeColor.r - inactiveColor.r),
                       inactiveColor.g + share * (activeColor.g - inactiveColor.g),
                       inactiveColor.b + share * (activeColor.b - inactiveColor.b), 1);
    }

    spacing: Style.baseGridSize

    Accessible.role: Accessible.Animation
    //: The name of three moving dots, only read aloud: the program looks for units.
    Accessible.name: qsTr("Searching")

    // Not an animation, which would draw the window at the screen's full rate.
    Timer {
        interval: 100
        repeat: true
        running: root.visible
        onTriggered: root._step = (root._step + interval / root.speed) % 3
    }

    Repeater {
        model: 3

        Rectangle {
            implicitWidth: 2 * root.radius
            implicitHeight: 2 * root.radius
            radius: root.radius
            antialiasing: true
            color: root._colorOf(index)
        }
    }
}
