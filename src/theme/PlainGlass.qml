import QtQuick
import Randblatt.Theme

// The frosted glass of a card where the scene graph has no shaders: plain rectangles, without the shadows and
// the lights' discs.
Item {
    id: root

    required property themeConfig config
    required property real corner
    required property bool opaque

    function limited(value: real): real {
        return value > 0 ? Math.min(value, 1) : 0
    }

    Fill {
        objectName: "base"
        visible: root.opaque
        color: root.config.textWhite ? "#26262c" : "#e9e9ee"
    }

    Fill {
        objectName: "lights"
        visible: root.config.lightsEnabled && root.config.lightsIntensity > 0
        color: root.config.lightColor.color(root.config.lightsIntensity)
    }

    Fill {
        objectName: "pane"
        color: root.config.textWhite ? Qt.rgba(0.13, 0.13, 0.16, 0.62) : Qt.rgba(0.96, 0.96, 0.98, 0.62)
    }

    Fill {
        color: root.config.tint.color(root.config.tintStrength)
    }

    Fill {
        color: Qt.rgba(0, 0, 0, root.limited(root.config.darkness))
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
