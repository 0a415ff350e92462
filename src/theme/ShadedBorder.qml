import QtQuick
import Randblatt.Theme

// The outline of a card: one point wide, white at the top, with a band of the lights' colour in the middle.
CardShader {
    id: root

    required property color lightColor

    shader: CardShader.Border
    inside: Math.ceil(0.3 * corner) + 2
    firstColor: Qt.rgba(1, 1, 1, 0.55)
    secondColor: Qt.rgba(lightColor.r, lightColor.g, lightColor.b, 0.25)
    thirdColor: Qt.rgba(1, 1, 1, 0.06)
}
