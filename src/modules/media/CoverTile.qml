import QtQuick
import Randblatt.Controls
import Randblatt.Media

// A cover in a rounded frame; a note on a tile until there is one.
Item {
    id: root

    required property CardAppearance appearance
    required property CoverCache covers
    property url url
    property real radius: 6

    implicitWidth: 34
    implicitHeight: implicitWidth
    Accessible.ignored: true

    Rectangle {
        anchors.fill: parent
        visible: !image.isLoaded
        radius: root.radius
        color: Qt.rgba(0.5, 0.5, 0.5, 0.3)

        Symbol {
            anchors.centerIn: parent
            name: "music.note"
            size: Math.round(root.width * 0.45)
            color: root.appearance.secondary
        }
    }

    CoverImage {
        id: image

        anchors.fill: parent
        cache: root.covers
        url: root.url
        radius: root.radius
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.width: 1
        border.color: root.appearance.alpha(0.12)
    }
}
