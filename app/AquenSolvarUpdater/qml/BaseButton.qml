// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Controls 1.2
import QtQuick.Controls.Styles 1.2
import "."

Button {
    id: root

    property color backgroundColor: Style.primaryColor
    property color textColor: Style.inverseColor

    property int _releasedKey: 0
    property double _releasedAt: 0 // in milliseconds

    // A held key clicks once. Not every window system marks all of its repetitions: a press at once
    // after a release is one as well.
    function _clickOnKey(event) {
        event.accepted = true;
        if (!event.isAutoRepeat && (event.key !== _releasedKey || Date.now() - _releasedAt > 30))
            clicked();
    }

    // The framework reports no disabled state to assistive programs: a disabled button is hidden from them.
    Accessible.ignored: !enabled

    activeFocusOnPress: true
    activeFocusOnTab: true

    Keys.onEnterPressed: _clickOnKey(event)
    Keys.onReturnPressed: _clickOnKey(event)
    Keys.onReleased: {
        _releasedKey = event.key;
        _releasedAt = Date.now();
    }

    style: ButtonStyle {
        padding {
            left: 0
            top: 0
            right: 0
            bottom: 0
        }
        background: Rectangle {
            color: control.pressed ? Style.pressedColor(control.backgroundColor) : control.backgroundColor
            opacity: control.enabled ? 1 : 0.5
            radius: Style.baseRadiusSize
            border.width: Style.baseBorderWidth
            border.color: Style.accentColor(color)

            FocusRing {
                visible: control.activeFocus
            }
        }
        label: Item {
            implicitWidth: Math.max(labelText.implicitWidth + 2 * Style.baseGridSize, 3 * implicitHeight)
            implicitHeight: labelText.implicitHeight + 2 * Style.smallGridSize

            BaseText {
                id: labelText

                anchors.centerIn: parent
                text: control.text
                color: control.textColor
                opacity: control.enabled ? 1 : 0.8
                Accessible.ignored: true
            }
        }
    }
}
