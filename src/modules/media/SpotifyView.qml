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
    required property color accent

    readonly property bool onScreen: visible && Window.visibility !== Window.Hidden
    readonly property string content: settings.mediaSource === "system" ? "SystemMediaView.qml"
                                    : module.auth.isAuthorized ? "SpotifyPlayer.qml" : "SpotifySignIn.qml"

    // By name, so that what is not shown is not even loaded, nor the services that it needs made.
    function load(): void {
        const common = { appearance: appearance }
        if (content === "SystemMediaView.qml")
            loader.setSource(content, Object.assign(common, { mediaKeys: mediaKeys, accent: accent }))
        else if (content === "SpotifySignIn.qml")
            loader.setSource(content, Object.assign(common, { auth: module.auth }))
        else
            loader.setSource(content, Object.assign(common, { auth: module.auth, service: module.service,
                                                              covers: module.covers, newPlaylist: module.newPlaylist,
                                                              accent: accent }))
    }

    onContentChanged: load()
    onOnScreenChanged: module.setOnScreen(root, onScreen)
    Component.onCompleted: module.setOnScreen(root, onScreen)
    Component.onDestruction: module.setOnScreen(root, false)

    Loader {
        id: loader

        anchors.fill: parent
        focus: true
    }
}
