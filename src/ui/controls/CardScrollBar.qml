import QtQuick
import QtQuick.Templates as T

// A thin scroll bar at the right rim of a card, seen only while it is of use.
T.ScrollBar {
    id: root

    required property CardAppearance appearance

    implicitWidth: 10
    padding: 3
    minimumSize: 0.06
    visible: size < 1

    Accessible.ignored: true

    contentItem: Rectangle {
        radius: width / 2
        color: root.appearance.alpha(root.pressed ? 0.5 : 0.3)
        opacity: root.active ? 1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Metrics.quickDuration
            }
        }
    }
}
