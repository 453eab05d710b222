// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtGraphicalEffects 1.0
import "."

Item {
    id: root

    property real percentage: 0 // 0 to 1
    property real animatedPercentage: percentage
    // Growth is animated; a drop is shown immediately.
    property real visiblePercentage: Math.min(percentage, animatedPercentage)
    property alias progressBarText: label.text

    // The software renderer draws no opacity mask: it shows the bar itself, with a rounded fill.
    readonly property bool _masked: GraphicsInfo.api !== GraphicsInfo.Software

    Accessible.role: Accessible.ProgressBar
    Accessible.name: progressBarText
    //: How full the progress bar is, only read aloud. %1 is a whole number from 0 to 100. With the
    //: space, if any, that the language puts before the sign.
    Accessible.description: qsTr("%1%").arg(Math.round(100 * visiblePercentage))

    Behavior on animatedPercentage {
        NumberAnimation {
            duration: 100
            easing.type: Easing.Linear
        }
    }

    Item {
        id: content

        anchors.fill: parent
        visible: !root._masked

        Rectangle {
            id: background

            anchors.fill: parent
            color: Style.darkColor
            radius: Style.baseRadiusSize
        }
        Rectangle {
            objectName: "progressBarFill"
            anchors.fill: background
            anchors.rightMargin: (1 - root.visiblePercentage) * background.width
            color: Style.primaryColor
            radius: root._masked ? 0 : Style.baseRadiusSize
        }
        BaseText {
            id: label

            objectName: "progressBarText"
            anchors.centerIn: parent
            color: Style.inverseColor
            Accessible.ignored: true
        }
    }

    Rectangle {
        id: outline

        anchors.fill: parent
        visible: false
        radius: Style.baseRadiusSize
    }

    OpacityMask {
        anchors.fill: parent
        visible: root._masked
        source: content
        maskSource: outline
    }
}
