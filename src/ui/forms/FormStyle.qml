pragma Singleton

import QtQuick

// The colours of ordinary windows, taken from the desktop's palette, light or dark, and the lengths that their
// forms share, in points.
QtObject {
    id: root

    readonly property SystemPalette system: SystemPalette {}
    readonly property bool dark: system.window.hslLightness < 0.5

    readonly property color white: "white"
    readonly property color ground: system.window
    readonly property color text: system.windowText
    readonly property color secondary: mix(ground, text, 0.68)
    readonly property color accent: system.highlight
    readonly property color accentText: system.highlightedText
    // What groups the rows of a form.
    readonly property color card: mix(ground, white, dark ? 0.055 : 0.72)
    readonly property color outline: alpha(0.1)
    readonly property color hairline: alpha(dark ? 0.09 : 0.08)
    // Grooves, tracks and the faces of buttons.
    readonly property color track: alpha(dark ? 0.16 : 0.13)
    // Behind the chosen one of some segments, and that one itself.
    readonly property color trough: dark ? Qt.rgba(0, 0, 0, 0.26) : track
    readonly property color segment: dark ? mix(card, white, 0.2) : white
    readonly property color face: mix(card, white, dark ? 0.1 : 1)
    readonly property color knob: dark ? "#f4f4f4" : "#ffffff"
    readonly property color knobOutline: Qt.rgba(0, 0, 0, dark ? 0.45 : 0.22)

    readonly property int headingSize: 13
    readonly property int captionSize: 12
    readonly property int cardRadius: 10
    readonly property int rowHeight: 46
    readonly property int rowPadding: 16
    // Where the controls of a form begin, from the left edge of their row's content.
    readonly property int labelWidth: 232
    readonly property int formWidth: 660

    // The text's colour at an opacity of 0…1.
    function alpha(opacity: real): color {
        return Qt.rgba(text.r, text.g, text.b, opacity)
    }

    function mix(from: color, to: color, share: real): color {
        return Qt.rgba(from.r + (to.r - from.r) * share, from.g + (to.g - from.g) * share,
                       from.b + (to.b - from.b) * share, 1)
    }
}
