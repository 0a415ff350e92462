import QtQuick

// Draws its content crisply over a soft glow of the content's shape, which lifts text off the glass.
Item {
    id: root

    required property color color
    // Opacity of the glow, 0…1; at 0 there is none, and nothing is spent on it.
    required property real strength
    default property alias content: holder.data
    // How far the glow may extend past the content's edge.
    readonly property real reach: 12

    Loader {
        objectName: "halo"
        active: root.strength > 0 && GraphicsInfo.api !== GraphicsInfo.Software
                && GraphicsInfo.api !== GraphicsInfo.Unknown
        anchors.fill: parent
        anchors.margins: -root.reach

        sourceComponent: HaloGlow {
            content: holder
            reach: root.reach
            color: root.color
            strength: Math.min(root.strength, 1)
        }
    }

    Item {
        id: holder

        anchors.fill: parent
    }
}
