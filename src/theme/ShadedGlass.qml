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
        anchors.fill: parent
        visible: !root.opaque
        corner: root.corner
        lightColor: root.config.lightColor.color()
        intensity: root.intensity
    }

    GlassPane {
        objectName: "base"
        anchors.fill: parent
        corner: root.corner
        visible: root.opaque
        layers: [root.config.textWhite ? Qt.rgba(0.15, 0.15, 0.17, 1) : Qt.rgba(0.91, 0.91, 0.93, 1)]
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

    GlassPane {
        objectName: "pane"
        anchors.fill: parent
        corner: root.corner
        layers: root.config.frosted ? [root.material, root.tint, root.darkening] : [root.darkening, root.tint]
        sheen: root.config.frosted ? 0.14 : 0
        rim: root.config.frosted ? 0 : 1
    }
}
