import QtQuick
import Randblatt.Theme

// The glass of a card under its content, drawn by shaders: shadows, lights, and a frosted or clear pane.
Item {
    id: root

    required property themeConfig config
    required property real corner
    required property bool opaque
    required property bool animated

    readonly property real intensity: limited(config.lightsIntensity)
    readonly property color tint: config.tint.color(config.tintStrength)
    readonly property color darkening: Qt.rgba(0, 0, 0, limited(config.darkness))
    readonly property color material: config.textWhite ? Qt.rgba(0.13, 0.13, 0.16, 0.62)
                                                       : Qt.rgba(0.96, 0.96, 0.98, 0.62)

    function limited(value: real): real {
        return value > 0 ? Math.min(value, 1) : 0
    }

    GlassShadow {
        objectName: "shadow"
        visible: !root.opaque
        corner: root.corner
        lightColor: root.config.lightColor.color()
        intensity: root.intensity
    }

    Pane {
        objectName: "base"
        visible: root.opaque
        fill: root.config.textWhite ? "#26262c" : "#e9e9ee"
    }

    Loader {
        anchors.fill: parent
        active: root.config.lightsEnabled && root.intensity > 0

        sourceComponent: GlassLights {
            objectName: "lights"
            color: root.config.lightColor.color()
            intensity: root.intensity
            blur: root.config.blur
            corner: root.corner
            running: root.animated
        }
    }

    Pane {
        objectName: "pane"
        fill: root.config.frosted ? root.material : "transparent"
        lower: root.config.frosted ? root.tint : root.darkening
        upper: root.config.frosted ? root.darkening : root.tint
        sheen: root.config.frosted ? 0.14 : 0
        rim: root.config.frosted ? 0 : 1
    }

    // Three colours over one another, bottom to top, and light on them.
    component Pane: CardShader {
        property color fill: "transparent"
        property color lower: "transparent"
        property color upper: "transparent"
        // Opacity of the white that falls from the top edge to the centre.
        property real sheen: 0
        // How much light the rim catches, 0…1.
        property real rim: 0

        name: "pane"
        corner: root.corner
    }
}
