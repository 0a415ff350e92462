import QtQuick

// A small turning ring: something is under way.
Item {
    id: root

    required property CardAppearance appearance
    // Edge length in points.
    property real size: 14
    property bool running: false

    implicitWidth: size
    implicitHeight: size
    visible: running
    Accessible.role: Accessible.Animation
    Accessible.name: "Wird geladen"

    Repeater {
        model: root.running ? 8 : 0

        Rectangle {
            required property int index

            readonly property real angle: index * Math.PI / 4
            readonly property real spread: (root.size - width) / 2

            width: root.size / 5
            height: width
            radius: width / 2
            x: spread + spread * Math.sin(angle)
            y: spread - spread * Math.cos(angle)
            color: root.appearance.alpha(0.15 + 0.75 * index / 7)
        }
    }

    // In steps, as the dots are: a smooth turn would draw every frame.
    Timer {
        interval: 100
        repeat: true
        running: root.running && root.Window.visibility !== Window.Hidden
        onTriggered: root.rotation = (root.rotation + 45) % 360
    }
}
