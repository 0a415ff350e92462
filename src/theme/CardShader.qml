import QtQuick

// One layer of a card, drawn by the shader `name` on the card's area and, where the layer reaches further, on a
// margin around it.
ShaderEffect {
    id: root

    required property string name
    required property real corner
    property real margin: 0
    readonly property size area: Qt.size(width - 2 * margin, height - 2 * margin)
    // Edge length of a device pixel in points.
    readonly property real pixel: 1 / Math.max(Screen.devicePixelRatio, 0.1)

    anchors.fill: parent
    anchors.margins: -margin
    fragmentShader: Qt.resolvedUrl("shaders/" + name + ".frag.qsb")
}
