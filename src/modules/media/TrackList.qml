import QtQuick
import Randblatt.Controls
import Randblatt.Media

// The tracks of the playlist that is open.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property SpotifyAuth auth
    required property SpotifyService service
    required property spotifyPlaylist playlist

    signal closed

    Keys.onEscapePressed: root.closed()
    Keys.onBackPressed: root.closed()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Find)
        if (event.accepted)
            search.open()
    }

    Item {
        id: header

        x: Metrics.cardPadding
        width: parent.width - 2 * Metrics.cardPadding
        height: backButton.height

        PlainButton {
            id: backButton

            objectName: "backButton"
            width: 24
            height: 28
            reach: 0
            text: "Zurück zu den Playlists"
            symbol: "chevron.left"
            showsText: false
            symbolSize: 14
            color: root.appearance.foreground
            accent: root.appearance.accent
            onClicked: root.closed()

            Rectangle {
                z: -1
                anchors.fill: parent
                radius: Metrics.rowRadius
                color: root.appearance.alpha(0.12)
            }
        }

        CardText {
            objectName: "playlistName"
            anchors.left: backButton.right
            anchors.leftMargin: Metrics.gap
            anchors.right: playAllButton.left
            anchors.rightMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            text: root.playlist.name
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }

        PlainButton {
            id: playAllButton

            objectName: "playAllButton"
            anchors.right: parent.right
            anchors.rightMargin: -reach
            anchors.verticalCenter: parent.verticalCenter
            text: "Alle abspielen"
            symbol: "play.circle.fill"
            showsText: false
            symbolSize: 22
            color: root.appearance.foreground
            accent: root.appearance.accent
            enabled: root.service.canSend && (list.count > 0 || !root.playlist.isLiked)
            onClicked: root.service.playPlaylist(root.playlist)
        }
    }

    MediaNotice {
        id: notice

        anchors.top: header.bottom
        anchors.topMargin: Metrics.tightGap
        x: Metrics.cardPadding
        width: parent.width - 2 * Metrics.cardPadding
        height: visible ? implicitHeight : 0
        visible: root.service.needsReauth || root.service.tracksProblem !== ""
        objectName: root.service.needsReauth ? "reauthNotice" : "tracksNotice"
        appearance: root.appearance
        text: root.service.needsReauth ? "Aktualisierte Berechtigungen nötig." : root.service.tracksProblem
        action: root.service.needsReauth ? "Neu anmelden" : "Erneut versuchen"
        canAct: root.service.needsReauth || (root.service.canSend && !root.service.loadingTracks)
        onActed: root.service.needsReauth ? root.auth.signIn() : root.service.loadMissingTracks()
    }

    CardText {
        objectName: "loadingTracks"
        anchors.top: notice.bottom
        x: Metrics.cardPadding
        visible: list.count === 0 && !notice.visible
        appearance: root.appearance
        text: root.service.loadingTracks ? "Titel werden geladen…" : "Keine Titel."
        size: Metrics.captionSize
        color: root.appearance.secondary
    }

    FilteredModel {
        id: found

        source: search.isOpen ? root.service.tracks : null
        text: search.text
        searchedRoles: ["name", "artist"]
    }

    SearchField {
        id: search

        anchors.top: notice.bottom
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        found: found.count
        onAccepted: list.focusRow(0)
        onClosed: Focus.give(list)
    }

    RowList {
        id: list

        objectName: "trackList"
        anchors.top: search.bottom
        anchors.topMargin: search.isOpen ? Metrics.tightGap : 0
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        spacing: 0
        appearance: root.appearance
        model: search.isOpen ? found : root.service.tracks
        Accessible.name: root.playlist.name
        onChosen: if (currentItem)
            (currentItem as TrackRow).clicked()
        onRemoved: if (currentItem)
            (currentItem as TrackRow).removed()

        delegate: TrackRow {
            id: row

            required property spotifyTrack track
            required property string name
            required property string artist

            objectName: "trackRow"
            width: list.width
            appearance: root.appearance
            title: name
            subtitle: artist
            editable: root.service.tracks.editable
            canRemove: root.service.canSend
            onClicked: root.service.playTrack(row.track, root.playlist)
            onRemoved: if (editable && canRemove)
                root.service.removeTrack(row.track, root.playlist)
        }
    }
}
