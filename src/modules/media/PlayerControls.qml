import QtQuick
import Randblatt.Controls
import Randblatt.Media

// The row of previous, play or pause, and next.
Row {
    id: root

    required property CardAppearance appearance
    required property SpotifyService service
    required property color accent
    property real diameter: 38

    spacing: 6

    PlainButton {
        objectName: "previousButton"
        anchors.verticalCenter: parent.verticalCenter
        text: "Zurück"
        symbol: "backward.fill"
        showsText: false
        symbolSize: 20
        color: root.appearance.foreground
        accent: root.appearance.accent
        enabled: root.service.canSend
        onClicked: root.service.previous()
    }

    PlayButton {
        objectName: "playPauseButton"
        text: root.service.isPlaying ? "Pause" : "Wiedergabe"
        symbol: root.service.isPlaying ? "pause.fill" : "play.fill"
        diameter: root.diameter
        symbolSize: root.diameter * 0.36
        accent: root.accent
        ringColor: root.appearance.accent
        enabled: root.service.canSend
        onClicked: root.service.togglePlayPause()
    }

    PlainButton {
        objectName: "nextButton"
        anchors.verticalCenter: parent.verticalCenter
        text: "Weiter"
        symbol: "forward.fill"
        showsText: false
        symbolSize: 20
        color: root.appearance.foreground
        accent: root.appearance.accent
        enabled: root.service.canSend
        onClicked: root.service.next()
    }
}
