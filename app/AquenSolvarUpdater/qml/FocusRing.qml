// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import "."

// Marks the control that has the focus. Drawn around its parent, whose size does not change.
Rectangle {
    anchors.fill: parent
    anchors.margins: -border.width - Style.baseBorderWidth
    color: "transparent"
    radius: Style.baseRadiusSize - anchors.margins
    border.width: Style.tinyGridSize
    border.color: Style.darkColor
}
