// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import "."

// Plain text: names come from units, and a unit must not insert mark-up.
Text {
    color: Style.mutedColor
    font.pixelSize: Style.regularFontPixelSize
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
