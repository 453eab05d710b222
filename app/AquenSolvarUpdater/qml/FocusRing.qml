import QtQuick 2.9
import "."

// Shows which control has the keyboard. Drawn around its parent, which stays as it is.
Rectangle {
    anchors.fill: parent
    anchors.margins: -border.width - Style.baseBorderWidth
    color: "transparent"
    radius: Style.baseRadiusSize - anchors.margins
    border.width: Style.tinyGridSize
    border.color: Style.darkColor
}
