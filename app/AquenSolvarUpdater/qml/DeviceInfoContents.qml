// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Layouts 1.3
import QtQuick.Window 2.2
import AquenSolvar 1.0
import AquenSolvar.Device 1.0 as AquenSolvar_Device
import "."

// The card of one unit. `device` becomes null when the unit is unplugged, which can be at any time.
RowLayout {
    id: root

    property var device
    // The name on the card, on one line. Names that the program gives are translated here: the log
    // and the list model keep them in English.
    readonly property string title: device ? _onOneLine(qsTranslate("UnitTitle", device.serialName)) : ""
    // For the list, which leads the keyboard's focus.
    readonly property bool buttonFocused: updateButton.activeFocus
    readonly property bool buttonEnabled: updateButton.enabled
    // The description of the card for assistive programs.
    readonly property string summary: [
        typeText.text,
        //: Only read aloud, in place of "Connected": the unit runs its bootloader, the small program
        //: that receives firmware, because an update was interrupted.
        _isDfu ? qsTr("In its bootloader") : connectedText.text,
        //: Only read aloud: the unit's firmware is old, an update is offered.
        _needsUpdate ? qsTr("Update needed") : upToDateText.text
    ].join(", ")
    // What the card has no room for, one fact on each line.
    readonly property string details: [
        device && device.firmwareVersion
        //: Tooltip of a card: the firmware that the unit runs. %1 is a version, for example 1.2.0.
        ? qsTr("Installed firmware: %1").arg(_onOneLine(device.firmwareVersion)) : "",
        _available === undefined ? "" : _available === ""
        //: Tooltip of a card: there is no valid firmware file for this kind of unit.
        ? qsTr("Available firmware: none")
        //: Tooltip of a card: the firmware that an update would write. %1 is a version, for example
        //: 1.3.1.
        : qsTr("Available firmware: %1").arg(_available),
        device && device.port
        //: Tooltip of a card: %1 is the path of a USB port, for example 1-2.3.
        ? qsTr("USB port: %1").arg(_onOneLine(device.port)) : ""
    ].filter(Boolean).join("\n")
    readonly property var _available: ShippedFirmware.versions[_isAquen ? AquenSolvar_Device.Device.AQUEN_DFU
                                      : _isSolvar ? AquenSolvar_Device.Device.SOLVAR_DFU : ""]
    readonly property bool _isDfu: !!device && device.isDfu
    readonly property bool _needsUpdate: !!device && device.needsUpdate
    readonly property bool _isAquen: !!device && (device.deviceType === AquenSolvar_Device.Device.AQUEN
                                                  || device.deviceType === AquenSolvar_Device.Device.AQUEN_DFU)
    readonly property bool _isSolvar: !!device && (device.deviceType === AquenSolvar_Device.Device.SOLVAR
                                                   || device.deviceType === AquenSolvar_Device.Device.SOLVAR_DFU)

    signal requestUpdate(var device)

    // Whether the button has the focus when the card gets it.
    function focusButton(focused) {
        updateButton.focus = focused;
    }

    function _onOneLine(text) {
        return text.replace(/[\u0000-\u001f\u007f-\u009f\u2028\u2029]/g, " ");
    }

    spacing: 0

    RowLayout {
        spacing: Style.baseGridSize
        Layout.margins: Style.baseGridSize

        Image {
            objectName: "deviceImage"
            source: root._isAquen ? "qrc:/icons/aquen" : root._isSolvar ? "qrc:/icons/solvar" : ""
            sourceSize: Qt.size(Layout.preferredWidth * Screen.devicePixelRatio,
                                Layout.preferredHeight * Screen.devicePixelRatio)
            fillMode: Image.PreserveAspectFit
            Layout.preferredWidth: 49
            Layout.preferredHeight: 60
            Accessible.ignored: true
        }
        ColumnLayout {
            spacing: 0
            // A long name is elided, so that the button fits.
            Layout.fillWidth: true
            Layout.maximumWidth: implicitWidth

            BaseText {
                objectName: "serialNameText"
                text: root.title
                elide: Text.ElideRight
                font.pixelSize: Style.titleFontPixelSize
                Layout.fillWidth: true
                Layout.topMargin: -Style.tinyGridSize
            }
            BaseText {
                id: connectedText

                //: Card, in capitals (25 letters; CJK 15): the unit is attached to the computer.
                text: qsTr("Connected")
                color: Style.primaryColor
                font.bold: true
                font.capitalization: Font.AllUppercase
                Layout.topMargin: Style.tinyGridSize
            }
            Item {
                Layout.fillHeight: true
            }
            BaseText {
                id: typeText

                objectName: "deviceTypeText"
                //: Card (35 letters; CJK 18), in place of the kind of the unit ("Aquen", "Solvar").
                text: root._isAquen ? "Aquen" : root._isSolvar ? "Solvar" : qsTr("Unknown Device Type")
                Layout.bottomMargin: -Style.tinyGridSize
            }
        }
        Item {
            Layout.fillWidth: true
        }
        ColumnLayout {
            Layout.alignment: Qt.AlignBottom

            BaseText {
                id: upToDateText

                objectName: "upToDateText"
                //: Card, above the button (35 letters; CJK 18): a state, there is nothing to update.
                text: qsTr("Firmware Up To Date")
                visible: !!root.device && !root.device.needsUpdate
                Layout.alignment: Qt.AlignRight
            }
            BaseButton {
                id: updateButton

                objectName: "updateButton"
                text: root._isDfu
                      //: Button on a card (30 letters; CJK 15): repeats an update that was interrupted.
                      ? qsTr("Resume Update")
                      //: Button on a card (30 letters; CJK 15): starts the update of this unit.
                      : qsTr("Update Firmware")
                enabled: root._needsUpdate
                activeFocusOnTab: false // the list leads Tab to it
                Layout.alignment: Qt.AlignRight
                Accessible.focusable: true
                Accessible.description: root.title
                onClicked: root.requestUpdate(root.device)
            }
        }
    }
}
