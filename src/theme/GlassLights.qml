import QtQuick
import Randblatt.Theme

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

    readonly property real shownIntensity: intensity > 0 ? Math.min(intensity, 1) : 0
    readonly property real shownBlur: blur > 0 ? Math.min(blur, 1000) : 0
    // From the discs' first places, 0, to their second ones, 1.
    property real drift: 0
    // The discs move by a fifth of a point at a time: at their pace a finer motion looks the same, and the scene
    // graph renders nothing between two steps.
    readonly property real place: Math.round(drift * 160) / 160

    visible: shownIntensity > 0

    SequentialAnimation {
        loops: Animation.Infinite
        running: true
        paused: !root.running || !root.visible || root.Window.visibility === Window.Hidden

        DriftAnimation {
            to: 1
        }

        DriftAnimation {
            to: 0
        }
    }

    LightsShader {
        shader: CardShader.InnerLights
        part: CardShader.Interior
    }

    LightsShader {
        shader: CardShader.Lights
    }

    component LightsShader: CardShader {
        anchors.fill: parent
        corner: root.corner
        inside: Math.ceil(0.3 * root.corner) + 1
        // Blur, intensity, drift.
        parameters: Qt.vector4d(root.shownBlur, root.shownIntensity, root.place, 0)
        firstColor: root.color
    }

    component DriftAnimation: NumberAnimation {
        target: root
        property: "drift"
        duration: 11000
        easing.type: Easing.Bezier
        easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
    }
}
