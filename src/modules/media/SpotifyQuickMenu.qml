import QtQuick
import Randblatt.Controls
import Randblatt.Media

// Whether our own playback device is there, why it is not, and the way to sign out.
Column {
    id: root

    required property SpotifyModule module

    readonly property SpotifyAuth auth: module.auth
    readonly property SpotifyWebPlayer webPlayer: module.webPlayer

    spacing: Metrics.gap

    Row {
        spacing: 7

        Rectangle {
            objectName: "deviceDot"
            anchors.verticalCenter: parent.verticalCenter
            width: 8
            height: 8
            radius: 4
            color: root.webPlayer.isReady ? "#4cd964" : "#ff9f0a"
        }

        Text {
            objectName: "deviceText"
            text: root.webPlayer.isReady ? "Gerät verbunden"
                : root.webPlayer.reason !== "" ? "Kein eigenes Gerät" : "Gerät verbindet…"
            color: "white"
            font.pixelSize: Metrics.sized(Metrics.bodySize)
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Text {
        objectName: "deviceProblem"
        width: parent.width
        visible: text !== ""
        text: root.webPlayer.reason
        color: Qt.rgba(1, 1, 1, 0.7)
        font.pixelSize: Metrics.sized(Metrics.captionSize)
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    PlainButton {
        objectName: "retryButton"
        x: -reach
        visible: root.webPlayer.canRetry
        text: "Erneut versuchen"
        onClicked: root.webPlayer.retry()
    }

    PlainButton {
        objectName: "signOutButton"
        x: -reach
        visible: root.auth.isAuthorized
        text: "Abmelden"
        symbol: "rectangle.portrait.and.arrow.right"
        showsText: true
        onClicked: root.auth.signOut()
    }
}
