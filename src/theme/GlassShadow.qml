import QtQuick

// The two shadows around a card: a faint glow in the colour of its lights and a black one below it. Nothing is
// drawn under the card itself.
Item {
    id: root

    required property real corner
    required property color lightColor
    // Opacity of the lights, 0…1.
    required property real intensity

    Repeater {
        model: 4

        CardShader {
            required property int index
            readonly property real glowRadius: 15
            readonly property real lowerRadius: 13
            readonly property real lowerOffset: 8
            readonly property color glow: Qt.rgba(root.lightColor.r, root.lightColor.g, root.lightColor.b,
                                                  root.intensity * 0.3 + 0.05)
            readonly property color lower: Qt.rgba(0, 0, 0, 0.28)

            name: "shadow"
            corner: root.corner
            drawn: index
            outside: Math.max(glowRadius, lowerRadius + lowerOffset) + 1
            // What the corners leave free.
            inside: Math.ceil(0.3 * root.corner) + 1
        }
    }
}
