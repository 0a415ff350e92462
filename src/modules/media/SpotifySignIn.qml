import QtQuick
import Randblatt.Controls
import Randblatt.Media

// Asks the user to sign in.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property SpotifyAuth auth

    Announcement {
        source: root
        text: root.auth.lastError
        isUrgent: true
    }

    Column {
        anchors.centerIn: parent
        width: parent.width - 2 * Metrics.cardPadding
        spacing: Metrics.gap

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.height >= 140 * Math.max(1, root.appearance.textScale)
            name: "music.note"
            size: 30
            color: root.appearance.foreground
        }

        CardText {
            width: parent.width
            appearance: root.appearance
            text: "Mit Spotify verbinden"
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
        }

        ProminentButton {
            objectName: "signInButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Anmelden"
            symbol: "arrow.right.circle.fill"
            focus: true
            onClicked: root.auth.signIn()
        }

        CardText {
            objectName: "signInError"
            width: parent.width
            visible: text !== ""
            appearance: root.appearance
            text: root.auth.lastError
            size: Metrics.captionSize
            color: root.appearance.destructive
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
}
