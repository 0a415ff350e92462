import QtQuick
import Randblatt.Theme

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

    shader: CardShader.Shadow
    outside: Math.max(glowRadius, lowerRadius + lowerOffset) + 1
    // What the corners leave free.
    inside: Math.ceil(0.3 * corner) + 1
    parameters: Qt.vector4d(lowerOffset, glowRadius, lowerRadius, 0)
    firstColor: Qt.rgba(lightColor.r, lightColor.g, lightColor.b, intensity * 0.3 + 0.05)
    secondColor: Qt.rgba(0, 0, 0, 0.28)
}
