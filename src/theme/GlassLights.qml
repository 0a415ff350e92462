import QtQuick

// Four large soft discs of light behind the glass, one near each corner, that drift slowly to and fro.
Item {
    id: root

    required property color color
    // Opacity of the whole, 0…1.
    required property real intensity
    // Blur radius of the discs' edges, in points.
    required property real blur
    required property real corner
    // The lights drift; otherwise they stay where they are and cost nothing.
    property bool running: true

    CardShader {
        id: discs

        readonly property color color: root.color
        readonly property real intensity: root.intensity > 0 ? Math.min(root.intensity, 1) : 0
        readonly property real blur: root.blur > 0 ? Math.min(root.blur, 1000) : 0
        // From the discs' first places, 0, to their second ones, 1.
        property real drift: 0

        objectName: "discs"
        name: "lights"
        corner: root.corner
        visible: intensity > 0

        SequentialAnimation on drift {
            loops: Animation.Infinite
            paused: !root.running || !discs.visible || root.Window.visibility === Window.Hidden

            DriftAnimation {
                to: 1
            }

            DriftAnimation {
                to: 0
            }
        }
    }

    component DriftAnimation: NumberAnimation {
        duration: 11000
        easing.type: Easing.Bezier
        easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
    }
}
