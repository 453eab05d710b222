// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Controls 1.4
import AquenSolvar 1.0
import "."

// The cards of the attached units, or the searching text while there are none.
Item {
    id: root

    property AquenSolvarListModel devices
    property bool searching: false
    // Follows the list's count, but only after the layout that changed it: a scroll bar that appears
    // during it narrows the list, which is then laid out again and changes the count once more.
    property bool _empty: true

    signal requestUpdate(var device)

    function _followCount() {
        _empty = listView.count === 0;
    }

    ScrollView {
        anchors.fill: parent
        anchors.rightMargin: -Style.tinyGridSize
        // Otherwise the first frame of an empty window has scroll bars.
        horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff
        verticalScrollBarPolicy: root._empty ? Qt.ScrollBarAlwaysOff : Qt.ScrollBarAsNeeded

        ListView {
            id: listView

            objectName: "deviceListView"
            rightMargin: Style.mediumGridSize
            spacing: Style.baseGridSize
            activeFocusOnTab: true
            // The scroll view disables flicking and, with it, key navigation.
            keyNavigationEnabled: true
            cacheBuffer: 300
            clip: true
            onCountChanged: Qt.callLater(root._followCount)
            // The focus returns to the current card, not to the button that had it last: from that
            // button the other cards cannot be reached.
            onActiveFocusChanged: {
                if (!activeFocus && currentItem)
                    currentItem.focus = true;
            }
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Devices")

            model: AquenSolvarFilterProxyModel {
                sourceModel: root.devices
                dynamicSortFilter: true
            }

            delegate: Rectangle {
                width: ListView.view.width
                implicitHeight: card.implicitHeight
                color: Style.lightAccentColor
                radius: Style.baseRadiusSize
                border.width: Style.baseBorderWidth
                border.color: Style.accentColor(color)
                Accessible.role: Accessible.ListItem
                Accessible.name: card.device ? card.device.serialName : ""
                Accessible.description: card.summary
                Accessible.focusable: true
                Accessible.focused: activeFocus

                DeviceInfoContents {
                    id: card

                    objectName: "deviceCard"
                    anchors.fill: parent
                    device: object
                    onRequestUpdate: root.requestUpdate(device)
                    // Not by currentIndex, which would take the focus from the button.
                    onButtonFocusedChanged: {
                        if (buttonFocused)
                            listView.positionViewAtIndex(index, ListView.Contain);
                    }
                }

                Rectangle {
                    anchors.fill: parent
                    visible: parent.activeFocus
                    color: "transparent"
                    radius: Style.baseRadiusSize
                    border.width: Style.tinyGridSize
                    border.color: Style.darkColor
                }
            }

            section.property: "section"
            section.delegate: Item {
                width: sectionTitle.implicitWidth
                height: Style.mediumGridSize

                BaseText {
                    id: sectionTitle

                    anchors.horizontalCenter: parent.horizontalCenter
                    text: section
                }
            }
        }
    }

    Item {
        anchors.fill: parent
        visible: listView.count === 0

        BaseText {
            id: searchingText

            objectName: "searchingText"
            anchors.centerIn: parent
            text: qsTr("Looking for Aquen or Solvar connected via USB")
            font.pixelSize: Style.heroFontPixelSize
        }
        ThreeCircleLoadingIndicator {
            objectName: "loadingIndicator"
            anchors.top: searchingText.bottom
            anchors.topMargin: Style.mediumGridSize
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.searching
        }
    }
}
