// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import AquenSolvar 1.0
import "."

// The most urgent notice, on one line, and a button that opens the guide where it helps. Hidden while
// there is no notice.
Item {
    id: root

    // Where Tab leads from the button.
    property DeviceListView devices
    // Gets the focus when the notice goes while its button has it.
    property Item previous
    readonly property bool _hasNotice: Notices.text !== ""

    implicitHeight: helpButton.implicitHeight
    visible: _hasNotice
    on_HasNoticeChanged: {
        if (!_hasNotice && helpButton.focus)
            previous.forceActiveFocus();
    }

    BaseText {
        id: noticeText

        objectName: "noticeText"
        anchors.left: parent.left
        anchors.right: helpButton.left
        anchors.rightMargin: Style.baseGridSize
        anchors.verticalCenter: parent.verticalCenter
        text: Notices.text
        color: Style.darkColor
        elide: Text.ElideRight
        font.pixelSize: Style.tinyFontPixelSize
        Accessible.role: Accessible.AlertMessage

        TextTip {
            anchors.fill: parent
            text: noticeText.text
        }
    }
    BaseButton {
        id: helpButton

        objectName: "noticeButton"
        anchors.right: parent.right
        //: Button beside a notice (20 letters; CJK 10): opens the user's guide.
        text: qsTr("Help")
        backgroundColor: Style.inverseColor
        textColor: Style.darkColor
        Accessible.description: noticeText.text
        Keys.onTabPressed: event.accepted = root.devices.enter(true)
        onClicked: Help.open(Notices.topic)
    }
}
