import QtQuick 2.9
import "."

// Plain text on purpose: names come from units, and no unit gets to write mark-up.
Text {
    color: Style.mutedColor
    font.pixelSize: Style.regularFontPixelSize
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
