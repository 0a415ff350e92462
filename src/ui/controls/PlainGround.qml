import QtQuick
import QtQuick.Templates as T

// The ground of a button without a frame: lit under the pointer, ringed while the keyboard acts on it.
Item {
    id: root

    required property T.AbstractButton control
    required property color color
    required property color accent

    Rectangle {
        anchors.fill: parent
        radius: Metrics.rowRadius
        color: root.color
        opacity: root.control.hovered && root.control.enabled ? 0.1 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Metrics.quickDuration
            }
        }
    }

    FocusRing {
        visible: root.control.visualFocus
        accent: root.accent
    }

    // Not on the button itself: with a handler it would take the right mouse button as well.
    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
