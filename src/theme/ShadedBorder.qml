import QtQuick

// The outline of a card: one point wide, white at the top, with a band of the lights' colour in the middle.
Item {
    id: root

    required property real corner
    required property color lightColor

    Repeater {
        model: 4

        CardShader {
            required property int index
            readonly property color topColor: Qt.rgba(1, 1, 1, 0.55)
            readonly property color middleColor: Qt.rgba(root.lightColor.r, root.lightColor.g, root.lightColor.b,
                                                         0.25)
            readonly property color bottomColor: Qt.rgba(1, 1, 1, 0.06)

            name: "border"
            corner: root.corner
            drawn: index
            inside: Math.ceil(0.3 * root.corner) + 2
        }
    }
}
