import QtQuick
import Randblatt.Controls
import Randblatt.Media
import Randblatt.Settings

// The content of the media card: the system's media control, the way to sign in, or the player.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property AppSettings settings
    required property SpotifyModule module
    required property MediaKeys mediaKeys
    required property SpotifyAuth auth
    required property SpotifyService service
    required property CoverCache covers
    required property color accent

    readonly property bool onScreen: visible && Window.visibility !== Window.Hidden

    onOnScreenChanged: module.setOnScreen(root, onScreen)
    Component.onCompleted: module.setOnScreen(root, onScreen)
    Component.onDestruction: module.setOnScreen(root, false)

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: root.settings.mediaSource === "system" ? system : root.auth.isAuthorized ? player : signIn
    }

    Component {
        id: system

        SystemMediaView {
            appearance: root.appearance
            mediaKeys: root.mediaKeys
            accent: root.accent
        }
    }

    Component {
        id: signIn

        SpotifySignIn {
            appearance: root.appearance
            auth: root.auth
        }
    }

    Component {
        id: player

        SpotifyPlayer {
            appearance: root.appearance
            auth: root.auth
            service: root.service
            covers: root.covers
            accent: root.accent
        }
    }
}
