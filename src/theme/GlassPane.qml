import QtQuick
import Randblatt.Theme

// A pane of glass: colours over one another and white light on them.
Item {
    id: root

    required property real corner
    // The colours, bottom to top.
    required property var layers
    // Opacity of the light that falls from the top edge to the centre.
    property real sheen: 0
    // How much light the rim catches, 0…1.
    property real rim: 0

    readonly property color color: layers.reduce((below, layer) => over(layer, below), Qt.rgba(0, 0, 0, 0))

    function over(upper: color, below: color): color {
        const opacity = upper.a + below.a * (1 - upper.a)
        const share = opacity > 0 ? upper.a / opacity : 0
        return Qt.rgba(below.r + (upper.r - below.r) * share, below.g + (upper.g - below.g) * share,
                       below.b + (upper.b - below.b) * share, opacity)
    }

    CardShader {
        id: edge

        anchors.fill: parent
        shader: CardShader.Pane
        corner: root.corner
        // As far as the rim's light reaches.
        inside: Math.ceil(0.3 * root.corner) + 14
        parameters: Qt.vector4d(root.sheen, root.rim, 0, 0)
        firstColor: root.color
    }

    // The rest is plain, and by far the larger part.
    Rectangle {
        anchors.fill: parent
        anchors.margins: edge.inside
        visible: width > 0 && height > 0

        gradient: Gradient {
            GradientStop {
                position: 0
                color: root.over(Qt.rgba(1, 1, 1, root.sheen * (1 - 2 * edge.inside / Math.max(root.height, 1))),
                                 root.color)
            }

            GradientStop {
                position: 0.5
                color: root.color
            }

            GradientStop {
                position: 1
                color: root.color
            }
        }
    }
}
