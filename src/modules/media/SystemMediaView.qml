import QtQuick
import Randblatt.Controls
import Randblatt.Media

// Three buttons that act on whichever application is playing.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property MediaKeys mediaKeys
    required property color accent

    implicitHeight: stack.implicitHeight

    Column {
        id: stack

        anchors.centerIn: parent
        width: parent.width - 2 * Metrics.cardPadding
        spacing: 16

        Column {
            width: parent.width
            spacing: 2

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                // In a low card the buttons matter more.
                visible: root.height >= 145 * Math.max(1, root.appearance.textScale)
                name: "headphones"
                size: 34
                color: root.appearance.foreground
            }

            CardText {
                width: parent.width
                appearance: root.appearance
                text: "Mediensteuerung"
                size: 14
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignHCenter
            }

            CardText {
                width: parent.width
                appearance: root.appearance
                text: "Steuert die App, die gerade abspielt"
                size: 11
                color: root.appearance.secondary
                horizontalAlignment: Text.AlignHCenter
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            // The plain buttons reach 8 points around their symbols.
            spacing: 30 - 8

            PlainButton {
                objectName: "previousButton"
                anchors.verticalCenter: parent.verticalCenter
                text: "Zurück"
                symbol: "backward.fill"
                showsText: false
                symbolSize: 20
                reach: 8
                color: root.appearance.foreground
                accent: root.appearance.accent
                onClicked: root.mediaKeys.previous()
            }

            PlayButton {
                objectName: "playPauseButton"
                text: "Wiedergabe oder Pause"
                symbol: "playpause.fill"
                accent: root.accent
                ringColor: root.appearance.accent
                onClicked: root.mediaKeys.playPause()
            }

            PlainButton {
                objectName: "nextButton"
                anchors.verticalCenter: parent.verticalCenter
                text: "Weiter"
                symbol: "forward.fill"
                showsText: false
                symbolSize: 20
                reach: 8
                color: root.appearance.foreground
                accent: root.appearance.accent
                onClicked: root.mediaKeys.next()
            }
        }
    }
}
