import QtQuick

// The outline of a card: one point wide, white at the top, with a band of the lights' colour in the middle.
CardShader {
    id: root

    required property color lightColor

    readonly property color topColor: Qt.rgba(1, 1, 1, 0.55)
    readonly property color middleColor: Qt.rgba(lightColor.r, lightColor.g, lightColor.b, 0.25)
    readonly property color bottomColor: Qt.rgba(1, 1, 1, 0.06)

    name: "border"
}
