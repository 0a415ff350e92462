import QtQuick
import Randblatt.Controls
import Randblatt.Media

// The player: what is playing above the playlists, or above the tracks of the one that is open.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property SpotifyAuth auth
    required property SpotifyService service
    required property CoverCache covers
    required property NewPlaylist newPlaylist
    required property color accent

    // The playlist being shown, while there is one.
    property spotifyPlaylist openPlaylist
    property bool isOpen: false
    readonly property bool isNaming: newPlaylist.isOpen

    function open(playlist: spotifyPlaylist): void {
        openPlaylist = playlist
        isOpen = true
        service.loadTracks(playlist)
    }

    // Asks for a new playlist's name, with the keyboard in its field.
    function askForName(): void {
        newPlaylist.open()
        const asked = prompt.item as NewPlaylistPrompt
        asked.takeFocus()
    }

    NowPlaying {
        id: nowPlaying

        x: Metrics.cardPadding
        width: parent.width - 2 * Metrics.cardPadding
        visible: !root.isNaming
        appearance: root.appearance
        service: root.service
        covers: root.covers
        accent: root.accent
    }

    Announcement {
        source: root
        text: root.service.statusMessage
    }

    CardText {
        id: status

        objectName: "statusMessage"
        anchors.top: nowPlaying.bottom
        anchors.topMargin: 4
        x: Metrics.cardPadding
        width: parent.width - 2 * Metrics.cardPadding
        // Without a track the message stands in its place.
        visible: text !== "" && nowPlaying.hasTrack && !root.isNaming
        appearance: root.appearance
        text: root.service.statusMessage
        size: Metrics.captionSize
        color: root.appearance.secondary
        wrapMode: Text.Wrap
    }

    Loader {
        anchors.top: status.visible ? status.bottom : nowPlaying.bottom
        anchors.topMargin: 8
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !root.isNaming
        focus: !root.isNaming
        sourceComponent: root.isOpen ? trackList : playlistList
    }

    Component {
        id: playlistList

        PlaylistList {
            appearance: root.appearance
            auth: root.auth
            service: root.service
            covers: root.covers
            onOpened: playlist => root.open(playlist)
            onNewRequested: root.askForName()
        }
    }

    Component {
        id: trackList

        TrackList {
            appearance: root.appearance
            auth: root.auth
            service: root.service
            playlist: root.openPlaylist
            onClosed: root.isOpen = false
        }
    }

    Loader {
        id: prompt

        anchors.fill: parent
        active: root.isNaming
        focus: root.isNaming
        sourceComponent: NewPlaylistPrompt {
            appearance: root.appearance
            newPlaylist: root.newPlaylist
            service: root.service
        }
    }
}
