pragma Singleton

import QtQuick

import Randblatt.Controls

// The colours of ordinary windows, taken from the desktop's palette, light or dark, and the lengths that their
// forms share, in points. Where the desktop wants it dark or light and the palette is not, the colours are ours.
QtObject {
    id: root

    readonly property SystemPalette system: SystemPalette {}
    readonly property bool dark: Wishes.knowsDark ? Wishes.isDark : systemIsDark
    readonly property bool systemIsDark: system.window.hslLightness < 0.5
    readonly property bool usesSystem: dark === systemIsDark && !highContrast
    readonly property bool highContrast: Wishes.highContrast

    readonly property color white: "white"
    readonly property color ground: usesSystem ? system.window : highContrast ? (dark ? "#000000" : "#ffffff")
                                                               : (dark ? "#242428" : "#f2f2f4")
    readonly property color text: usesSystem ? system.windowText : highContrast ? (dark ? "#ffffff" : "#000000")
                                                                 : (dark ? "#f4f4f6" : "#1c1c20")
    readonly property color secondary: highContrast ? text : mix(ground, text, 0.72)
    // What stands for the desktop's colour is seen on the ground: at least 3 to 1, and 4.5 where contrast is high.
    readonly property color accent: readable(Wishes.hasAccent ? Wishes.accent : system.highlight,
                                             highContrast ? 4.5 : 3)
    readonly property color accentText: luminance(accent) > 0.18 ? "black" : "white"
    // What groups the rows of a form.
    readonly property color card: highContrast ? ground : mix(ground, white, dark ? 0.055 : 0.72)
    readonly property color outline: alpha(highContrast ? 0.7 : 0.1)
    readonly property color hairline: alpha(highContrast ? 0.5 : dark ? 0.09 : 0.08)
    // Grooves, tracks and the faces of buttons.
    readonly property color track: alpha(highContrast ? 0.5 : dark ? 0.16 : 0.13)
    // The rims of what can be worked: at least 3 to 1 where contrast is high.
    readonly property color rim: alpha(highContrast ? 0.7 : 0.2)
    // Behind the chosen one of some segments, and that one itself.
    readonly property color trough: dark ? Qt.rgba(0, 0, 0, 0.26) : alpha(0.13)
    readonly property color segment: dark ? mix(card, white, highContrast ? 0.35 : 0.2) : white
    readonly property color face: mix(card, white, dark ? 0.1 : 1)
    readonly property color knob: dark ? "#f4f4f4" : "#ffffff"
    readonly property color knobOutline: Qt.rgba(0, 0, 0, highContrast ? 1 : dark ? 0.45 : 0.22)

    readonly property real bodySize: sized(Metrics.bodySize)
    readonly property real headingSize: sized(13)
    readonly property real captionSize: sized(12)
    readonly property int cardRadius: 10
    readonly property int rowHeight: 46
    readonly property int rowPadding: 16
    // Where the controls of a form begin, from the left edge of their row's content.
    readonly property real labelWidth: sized(232)
    readonly property real formWidth: sized(660)

    // The text's colour at an opacity of 0…1.
    function alpha(opacity: real): color {
        return Qt.rgba(text.r, text.g, text.b, opacity)
    }

    function mix(from: color, to: color, share: real): color {
        return Qt.rgba(from.r + (to.r - from.r) * share, from.g + (to.g - from.g) * share,
                       from.b + (to.b - from.b) * share, 1)
    }

    function sized(length: real): real {
        return Metrics.sized(length)
    }

    // The colour, or the nearest to it on the way to the text's colour that has this contrast with the ground.
    function readable(color: color, contrast: real): color {
        for (let share = 0; share < 1; share += 0.1) {
            const mixed = mix(color, text, share)
            if (Contrast.between(mixed, ground) >= contrast)
                return mixed
        }
        return text
    }

    function luminance(color: color): real {
        return Contrast.luminance(color)
    }
}
