// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
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

    // Gives the focus to the first or the last of the keyboard's stops; false in an empty list. The
    // stops are, from top to bottom, each card and then its button, if that can be pressed. The
    // framework's own order is that of arrival, so the list leads Tab by itself.
    function enter(forward) {
        if (listView.count === 0)
            return false;
        _focusRow(forward ? 0 : listView.count - 1, !forward);
        return true;
    }

    function _focusRow(row, onButton) {
        listView.currentIndex = row;
        listView.currentItem.takeFocus(onButton);
        _showCurrent();
    }

    // With its section heading, which counts as a part of the row.
    function _showCurrent() {
        if (listView.activeFocus && listView.currentItem)
            listView.positionViewAtIndex(listView.currentIndex, ListView.Contain);
    }

    function _step(forward) {
        var row = listView.currentIndex;
        var card = listView.currentItem;
        if (!card)
            _leave(forward);
        else if (forward ? card.canTakeButton : card.onButton)
            _focusRow(row, forward);
        else if (forward ? row + 1 < listView.count : row > 0)
            _focusRow(forward ? row + 1 : row - 1, !forward);
        else
            _leave(forward);
    }

    function _leave(forward) {
        var item = listView.nextItemInFocusChain(forward);
        if (item)
            item.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
    }

    function _moveTo(row, event) {
        event.accepted = row >= 0 && row < listView.count;
        if (event.accepted)
            _focusRow(row, false);
    }

    function _followCount() {
        _empty = listView.count === 0;
        if (!scrollView.focus)
            listView.currentIndex = 0; // where the keyboard is to enter
        _showCurrent();
    }

    ScrollView {
        id: scrollView

        anchors.fill: parent
        anchors.rightMargin: -Style.tinyGridSize
        // Otherwise the first frame of an empty window has scroll bars.
        horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff
        verticalScrollBarPolicy: root._empty ? Qt.ScrollBarAlwaysOff : Qt.ScrollBarAsNeeded
        // A plain bar beside the cards.
        style: ScrollViewStyle {
            transientScrollBars: false
            handleOverlap: 0
            incrementControl: null
            decrementControl: null
            scrollBarBackground: Item {
                implicitWidth: Style.baseGridSize
            }
            handle: Item {
                implicitWidth: Style.baseGridSize

                Rectangle {
                    anchors.fill: parent
                    anchors.leftMargin: Style.smallGridSize
                    radius: width / 2
                    color: styleData.pressed || styleData.hovered ? Style.mutedColor : Style.secondaryColor
                }
            }
        }

        ListView {
            id: listView

            objectName: "deviceListView"
            rightMargin: Style.mediumGridSize
            spacing: Style.baseGridSize
            activeFocusOnTab: true
            enabled: count > 0 // an empty list is no stop of the keyboard
            cacheBuffer: 300
            clip: true
            // The view is positioned by _showCurrent(); following the highlight would cut cards.
            highlightFollowsCurrentItem: false
            onCountChanged: Qt.callLater(root._followCount)
            onActiveFocusChanged: {
                // A press of the pointer must not move what it presses.
                if (activeFocus && currentItem && !currentItem.onButton)
                    root._showCurrent();
            }
            Keys.onTabPressed: root._step(true)
            Keys.onBacktabPressed: root._step(false)
            Keys.onUpPressed: root._moveTo(currentIndex - 1, event)
            Keys.onDownPressed: root._moveTo(currentIndex + 1, event)
            Accessible.role: Accessible.List
            //: The name of the list of units, only read aloud.
            Accessible.name: qsTr("Devices")

            model: AquenSolvarFilterProxyModel {
                sourceModel: root.devices
                dynamicSortFilter: true
            }

            // A scope: what has the focus within a card keeps it when cards come or go.
            delegate: FocusScope {
                id: cardScope

                readonly property bool canTakeButton: !onButton && card.buttonEnabled
                readonly property bool onButton: card.buttonFocused

                function takeFocus(onButton) {
                    card.focusButton(onButton && card.buttonEnabled);
                    forceActiveFocus();
                }

                width: ListView.view.width
                implicitHeight: card.implicitHeight
                Accessible.role: Accessible.ListItem
                Accessible.name: card.title
                Accessible.description: [card.summary].concat(card.details.split("\n")).filter(Boolean).join(", ")
                Accessible.focusable: true
                Accessible.focused: activeFocus && !onButton

                Rectangle {
                    anchors.fill: parent
                    color: Style.lightAccentColor
                    radius: Style.baseRadiusSize
                    border.width: Style.baseBorderWidth
                    border.color: Style.accentColor(color)

                    TextTip {
                        anchors.fill: parent
                        text: card.details
                    }
                    DeviceInfoContents {
                        id: card

                        objectName: "deviceCard"
                        anchors.fill: parent
                        device: object
                        onRequestUpdate: root.requestUpdate(device)
                        onButtonFocusedChanged: {
                            if (buttonFocused)
                                listView.currentIndex = index;
                        }
                    }
                }
                Rectangle {
                    anchors.fill: parent
                    visible: cardScope.activeFocus && !cardScope.onButton
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
            //: Middle of the empty window (45 letters; CJK 27). Aquen and Solvar are the names of the
            //: two kinds of unit.
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
