import QtQuick
import Randblatt.Theme

// A card of glass in the look of a theme: its shadows, lights and pane, the content, and the border above it.
// The shadows lie outside the item's bounds.
Item {
    id: root

    required property themeConfig config
    // Corner radius in points.
    required property real corner
    // Where nothing composes translucent windows: an opaque card without shadows.
    property bool opaque: false
    // The lights may drift, because the card is on screen.
    property bool animated: true
    // The pane alone is drawn while this is false: enough for a first frame, which need not wait for the rest.
    property bool isComplete: true
    default property alias content: holder.data

    // Clear glass needs shaders; without them every card is drawn frosted.
    readonly property bool hasShaders: GraphicsInfo.api !== GraphicsInfo.Software
                                       && GraphicsInfo.api !== GraphicsInfo.Unknown
    readonly property bool lacksShaders: GraphicsInfo.api === GraphicsInfo.Software

    // What the card is made of, bottom to top: an opaque base, the thin material, the darkening.
    readonly property color base: config.textWhite ? Qt.rgba(0.15, 0.15, 0.17, 1) : Qt.rgba(0.91, 0.91, 0.93, 1)
    readonly property color material: config.textWhite ? Qt.rgba(0.13, 0.13, 0.16, 0.62)
                                                       : Qt.rgba(0.96, 0.96, 0.98, 0.62)
    readonly property color darkening: Qt.rgba(0, 0, 0, config.darkness > 0 ? Math.min(config.darkness, 1) : 0)

    Loader {
        anchors.fill: parent
        sourceComponent: root.hasShaders ? shadedGlass : root.lacksShaders ? plainGlass : null
    }

    Item {
        id: holder

        anchors.fill: parent
    }

    Loader {
        anchors.fill: parent
        sourceComponent: root.lacksShaders ? plainBorder : root.hasShaders && root.isComplete ? shadedBorder : null
    }

    Component {
        id: shadedGlass

        ShadedGlass {
            config: root.config
            base: root.base
            material: root.material
            darkening: root.darkening
            corner: root.corner
            opaque: root.opaque
            animated: root.animated
            isComplete: root.isComplete
        }
    }

    Component {
        id: plainGlass

        PlainGlass {
            config: root.config
            base: root.base
            material: root.material
            darkening: root.darkening
            corner: root.corner
            opaque: root.opaque
        }
    }

    Component {
        id: shadedBorder

        ShadedBorder {
            objectName: "border"
            corner: root.corner
            lightColor: root.config.lightColor.color()
        }
    }

    Component {
        id: plainBorder

        Rectangle {
            objectName: "border"
            radius: root.corner
            color: "transparent"
            border.color: Qt.rgba(1, 1, 1, 0.22)
        }
    }
}
