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

    function _colorAtStep(circle, step) {
        return step % 3 === circle ? activeColor : inactiveColor;
    }

    spacing: Style.baseGridSize

    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Searching")

    Repeater {
        model: 3

        Rectangle {
            id: circle

            implicitWidth: 2 * root.radius
            implicitHeight: 2 * root.radius
            radius: root.radius
            antialiasing: true
            color: root._colorAtStep(index, 0)

            SequentialAnimation {
                running: root.visible
                loops: Animation.Infinite

                ColorAnimation {
                    target: circle
                    property: "color"
                    to: root._colorAtStep(index, 1)
                    duration: root.speed
                }
                ColorAnimation {
                    target: circle
                    property: "color"
                    to: root._colorAtStep(index, 2)
                    duration: root.speed
                }
                ColorAnimation {
                    target: circle
                    property: "color"
                    to: root._colorAtStep(index, 3)
                    duration: root.speed
                }
            }
        }
    }
}
