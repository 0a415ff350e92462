import QtQuick

// The two shadows around a card: a faint glow in the colour of its lights and a black one below it. Nothing is
// drawn under the card itself.
CardShader {
    id: root

    required property color lightColor
    // Opacity of the lights, 0…1.
    required property real intensity

    readonly property real glowRadius: 15
    readonly property real lowerRadius: 13
    readonly property real lowerOffset: 8
    readonly property color glow: Qt.rgba(lightColor.r, lightColor.g, lightColor.b, intensity * 0.3 + 0.05)
    readonly property color lower: Qt.rgba(0, 0, 0, 0.28)

    name: "shadow"
    margin: Math.max(glowRadius, lowerRadius + lowerOffset) + 1
}
