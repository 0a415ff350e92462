import QtQuick
import Randblatt.Theme

// The frosted glass of a card where the scene graph has no shaders: plain rectangles, without the shadows and
// the lights' discs.
Item {
    id: root

    required property themeConfig config
    required property color base
    required property color material
    required property color darkening
    required property real corner
    required property bool opaque

    Fill {
        objectName: "base"
        visible: root.opaque
        color: root.base
    }

    Fill {
        objectName: "lights"
        visible: root.config.lightsEnabled && root.config.lightsIntensity > 0
        color: root.config.lightColor.color(root.config.lightsIntensity)
    }

    Fill {
        objectName: "pane"
        color: root.material
    }

    Fill {
        color: root.config.tint.color(root.config.tintStrength)
    }

    Fill {
        color: root.darkening
    }

    Fill {
        gradient: Gradient {
            GradientStop {
                position: 0
                color: Qt.rgba(1, 1, 1, 0.14)
            }

            GradientStop {
                position: 0.5
                color: Qt.rgba(1, 1, 1, 0)
            }
        }
    }

    component Fill: Rectangle {
        anchors.fill: parent
        radius: root.corner
    }
}
