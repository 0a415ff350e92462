import QtQuick
import Randblatt.Theme

// The glass of a card under its content, drawn by shaders: shadows, lights, and a frosted or clear pane.
Item {
    id: root

    required property themeConfig config
    required property color base
    required property color material
    required property color darkening
    required property real corner
    required property bool opaque
    required property bool animated
    // With shadows and lights; without, there is the pane alone.
    required property bool isComplete

    readonly property real intensity: config.lightsIntensity > 0 ? Math.min(config.lightsIntensity, 1) : 0
    readonly property color tint: config.tint.color(config.tintStrength)

    Loader {
        anchors.fill: parent
        active: root.isComplete

        sourceComponent: GlassShadow {
            objectName: "shadow"
            visible: !root.opaque
            corner: root.corner
            lightColor: root.config.lightColor.color()
            intensity: root.intensity
        }
    }

    GlassPane {
        objectName: "base"
        anchors.fill: parent
        corner: root.corner
        visible: root.opaque
        layers: [root.base]
    }

    Loader {
        anchors.fill: parent
        active: root.isComplete && root.config.lightsEnabled && root.intensity > 0

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
        layers: root.config.frosted ? [root.material, root.tint, root.darkening]
                                    : [root.darkening, root.tint]
        sheen: root.config.frosted ? 0.14 : 0
        rim: root.config.frosted ? 0 : 1
    }
}
