import QtQuick

// A pane of glass: three colours over one another, bottom to top, and light on them.
Item {
    id: root

    required property real corner
    property color fill: "transparent"
    property color lower: "transparent"
    property color upper: "transparent"
    // Opacity of the white that falls from the top edge to the centre.
    property real sheen: 0
    // How much light the rim catches, 0…1.
    property real rim: 0

    Repeater {
        model: 5

        CardShader {
            required property int index
            readonly property color fill: root.fill
            readonly property color lower: root.lower
            readonly property color upper: root.upper
            readonly property real sheen: root.sheen
            readonly property real rim: root.rim

            name: drawn === CardShader.Interior ? "pane_inner" : "pane"
            corner: root.corner
            drawn: index
            // As far as the rim's light reaches.
            inside: Math.ceil(0.3 * root.corner) + 14
        }
    }
}
