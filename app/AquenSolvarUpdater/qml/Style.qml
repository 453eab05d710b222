// SPDX-License-Identifier: LicenseRef-Proprietary
pragma Singleton
import QtQuick 2.9

// Sizes in device-independent pixels, and colours with their variants.
QtObject {
    readonly property int notificationPixelSize: 10
    readonly property int tinyFontPixelSize: 11
    readonly property int smallFontPixelSize: 12
    readonly property int regularFontPixelSize: 14
    readonly property int titleFontPixelSize: 18
    readonly property int heroFontPixelSize: 20

    readonly property real baseGridSize: 10
    readonly property real smallGridSize: baseGridSize / 2
    // Rounded down: half pixels are blurred.
    readonly property real tinyGridSize: Math.floor(smallGridSize / 2)
    readonly property real mediumGridSize: baseGridSize + baseGridSize
    readonly property real bigGridSize: mediumGridSize + baseGridSize
    readonly property real largeGridSize: bigGridSize + baseGridSize
    readonly property real hugeGridSize: largeGridSize + baseGridSize
    readonly property real enormousGridSize: hugeGridSize + baseGridSize
    readonly property real heroGridSize: enormousGridSize + baseGridSize

    readonly property int baseBorderWidth: 1
    readonly property real baseRadiusSize: 4

    readonly property color primaryColor: "#26a9f2"
    readonly property color darkColor: "#323238"
    readonly property color mutedColor: "#9494a0"
    readonly property color secondaryColor: "#cacacf"
    readonly property color lightColor: "#eaeaec"
    readonly property color darkAccentColor: "#25252a"
    readonly property color alertColor: "#fda734"
    readonly property color lightAccentColor: "#fafafa"
    readonly property color semiDarkColor: "#5e5e6c"
    readonly property color inverseColor: "white"
    readonly property color errorColor: "#ff341e"

    readonly property real accentDarkerFactor: 1.15
    readonly property real pressedLighterFactor: 1.15
    readonly property real pressedDarkerFactor: 1.03

    // The border colour of a shape that is filled with @p c.
    function accentColor(c) {
        return Qt.darker(c, accentDarkerFactor);
    }

    function isInverse(c) {
        return Qt.colorEqual(c, inverseColor);
    }

    // The fill of a pressed button: lighter; the inverse colour, which cannot be lighter, gets darker.
    function pressedColor(c) {
        return isInverse(c) ? Qt.darker(c, pressedDarkerFactor) : Qt.lighter(c, pressedLighterFactor);
    }
}
