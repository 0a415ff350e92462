import QtQuick
import Randblatt.Controls
import Randblatt.Media

// What is playing, with the controls: in one line, or large with a big cover.
Item {
    id: root

    required property CardAppearance appearance
    required property SpotifyService service
    required property CoverCache covers
    required property color accent
    property bool large: false

    readonly property real coverSize: large ? 110 : 34
    readonly property bool hasTrack: service.trackName !== ""

    implicitHeight: large ? Math.max(coverSize, 4 + titles.height + controls.height + 6)
                          : Math.max(coverSize, titles.height, controls.height)

    CoverTile {
        id: cover

        objectName: "cover"
        anchors.verticalCenter: parent.verticalCenter
        width: root.coverSize
        height: root.coverSize
        radius: root.large ? 10 : 6
        appearance: root.appearance
        covers: root.covers
        url: root.service.albumArtURL
    }

    Column {
        id: titles

        anchors.left: cover.right
        anchors.leftMargin: root.large ? Metrics.wideGap : Metrics.gap
        anchors.right: root.large ? formButton.left : controls.left
        anchors.rightMargin: Metrics.tightGap
        y: root.large ? 4 : (root.height - height) / 2

        CardText {
            objectName: "trackName"
            width: parent.width
            visible: root.hasTrack
            appearance: root.appearance
            text: root.service.trackName
            size: root.large ? 15 : 16
            font.weight: Font.Bold
        }

        CardText {
            objectName: "artistName"
            width: parent.width
            visible: root.hasTrack
            appearance: root.appearance
            text: root.service.artistName
            size: root.large ? 12 : 13
            color: root.appearance.secondary
        }

        CardText {
            objectName: "idleMessage"
            width: parent.width
            visible: !root.hasTrack
            appearance: root.appearance
            text: root.service.statusMessage
            // What says why something failed is longer than the space beside the controls.
            size: text.length > 40 ? Metrics.captionSize : Metrics.calloutSize
            color: root.appearance.secondary
            wrapMode: Text.Wrap
        }
    }

    PlayerControls {
        id: controls

        // In the large form beside the cover's lower half.
        x: root.large ? titles.x - 5 : formButton.x - width - 2
        y: root.large ? root.height - height - 6 : (root.height - height) / 2
        appearance: root.appearance
        service: root.service
        accent: root.accent
        diameter: root.large ? 42 : 34
    }

    PlainButton {
        id: formButton

        objectName: "formButton"
        anchors.right: parent.right
        anchors.rightMargin: -reach
        y: root.large ? 0 : (root.height - height) / 2
        text: root.large ? "Kleine Ansicht" : "Große Ansicht"
        symbol: root.large ? "chevron.up" : "chevron.down"
        showsText: false
        symbolSize: 18
        color: root.appearance.secondary
        accent: root.appearance.accent
        onClicked: root.large = !root.large
    }
}
