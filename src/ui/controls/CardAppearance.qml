import QtQuick

import Randblatt.Controls

// How the content of one card is to be drawn: its text colours and the factor on its text sizes.
QtObject {
    id: root

    // White text on a dark card, else black on a light one.
    property bool textWhite: true
    // Factor on every text size of the card.
    property real textScale: 1

    // Something in the card asks for the card's options.
    signal optionsRequested

    readonly property color foreground: textWhite ? "white" : "black"
    readonly property bool highContrast: Wishes.highContrast
    // Texts that say something stand out from the default glass by 4.5 to 1, whatever lies behind it; what is
    // tertiary, placeholders and marks, by 3.
    readonly property color secondary: alpha(highContrast ? 0.92 : 0.72)
    readonly property color tertiary: alpha(highContrast ? 0.85 : 0.6)
    readonly property color accent: textWhite ? "#c4b8ff" : highContrast ? "#2f1aa0" : "#5a3fe0"
    readonly property color destructive: textWhite ? "#ffb3b3" : highContrast ? "#7a0010" : "#c01c28"
    // Behind selected text, which is white.
    readonly property color selection: "#6a50e6"
    // The outlines of fields and boxes.
    readonly property color rim: alpha(highContrast ? 0.75 : 0.16)
    // What lies between the glass and the texts where contrast is to be high.
    readonly property color veil: textWhite ? Qt.rgba(0, 0, 0, 0.9) : Qt.rgba(1, 1, 1, 0.9)

    // The foreground at an opacity of 0…1.
    function alpha(opacity: real): color {
        return Qt.rgba(foreground.r, foreground.g, foreground.b, opacity)
    }
}
