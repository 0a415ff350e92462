import QtQuick

// Shows which control the keyboard acts on; the control sets `visible` from its visual focus.
Rectangle {
    id: root

    property color accent: "#c4b8ff"

    anchors.fill: parent
    anchors.margins: -2
    radius: 8
    color: "transparent"
    border.width: 2
    border.color: accent
}
