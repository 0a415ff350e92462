import QtQuick

// A layer of a card that fills its parent, or a strip of it, drawn by the shader `name`. Layers of which only the
// surroundings of the edge are worth drawing consist of four strips, since software rendering pays for each pixel.
ShaderEffect {
    id: root

    enum Part {
        TopStrip,
        BottomStrip,
        LeftStrip,
        RightStrip,
        Interior,
        Whole
    }

    required property string name
    required property real corner
    property int drawn: CardShader.Whole
    // How far the strips reach beyond the edge, and how far inside.
    property real outside: 0
    property real inside: 0

    readonly property size area: Qt.size(parent.width, parent.height)
    // The drawn part in the parent's coordinates.
    readonly property rect piece: place(drawn, Math.min(inside, area.width / 2, area.height / 2))
    // Edge length of a device pixel in points.
    readonly property real pixel: 1 / Math.max(Screen.devicePixelRatio, 0.1)

    function place(drawn: int, depth: real): rect {
        const broad = area.width + 2 * outside
        const inner = area.height - 2 * depth
        switch (drawn) {
        case CardShader.TopStrip:
            return Qt.rect(-outside, -outside, broad, outside + depth)
        case CardShader.BottomStrip:
            return Qt.rect(-outside, area.height - depth, broad, outside + depth)
        case CardShader.LeftStrip:
            return Qt.rect(-outside, depth, outside + depth, inner)
        case CardShader.RightStrip:
            return Qt.rect(area.width - depth, depth, outside + depth, inner)
        case CardShader.Interior:
            return Qt.rect(depth, depth, area.width - 2 * depth, inner)
        default:
            return Qt.rect(0, 0, area.width, area.height)
        }
    }

    x: piece.x
    y: piece.y
    width: piece.width
    height: piece.height
    fragmentShader: Qt.resolvedUrl("shaders/" + name + ".frag.qsb")
}
