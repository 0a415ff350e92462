import QtQuick

// Shows which control the keyboard acts on.
Rectangle {
    anchors.fill: parent
    anchors.margins: -3
    radius: 9
    color: "transparent"
    border.width: 2
    border.color: FormStyle.accent
}
