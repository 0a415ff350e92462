import QtQuick

// How the content of one card is to be drawn: its text colours and the factor on its text sizes.
QtObject {
    id: root

    // White text on a dark card, else black on a light one.
    property bool textWhite: true
    // Factor on every text size of the card.
    property real textScale: 1

    readonly property color foreground: textWhite ? "white" : "black"
    readonly property color secondary: alpha(0.65)
    readonly property color tertiary: alpha(0.45)
    readonly property color accent: textWhite ? "#8c73ff" : "#5a3fe0"
    readonly property color destructive: textWhite ? "#ff6b6b" : "#c01c28"

    // The foreground at an opacity of 0…1.
    function alpha(opacity: real): color {
        return Qt.rgba(foreground.r, foreground.g, foreground.b, opacity)
    }
}
