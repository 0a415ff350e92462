import QtQuick
import Randblatt.Controls
import Randblatt.Media

// The user's playlists below the saved tracks, or why there are none.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property SpotifyAuth auth
    required property SpotifyService service
    required property CoverCache covers

    readonly property bool isEmpty: service.playlists.count === 0 && !service.loadingPlaylists
                                    && service.playlistsProblem === ""
    readonly property bool showsRows: !service.needsReauth && !isEmpty

    signal opened(playlist: spotifyPlaylist)
    signal newRequested

    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Find)
        if (event.accepted)
            search.open()
    }

    CardText {
        id: header

        x: Metrics.cardPadding
        height: newButton.height
        appearance: root.appearance
        text: "Playlists"
        size: Metrics.calloutSize
        font.weight: Font.Bold
        Accessible.role: Accessible.Heading
    }

    PlainButton {
        id: newButton

        objectName: "newPlaylistButton"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding - reach
        text: "Neue Playlist"
        symbol: "plus"
        showsText: false
        symbolSize: 14
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.newRequested()
    }

    MediaNotice {
        id: notice

        anchors.top: newButton.bottom
        anchors.topMargin: 2
        x: Metrics.cardPadding
        width: parent.width - 2 * Metrics.cardPadding
        height: visible ? implicitHeight : 0
        visible: root.service.needsReauth || root.service.playlistsProblem !== ""
        objectName: root.service.needsReauth ? "reauthNotice" : "playlistsNotice"
        appearance: root.appearance
        text: root.service.needsReauth ? "Aktualisierte Berechtigungen nötig." : root.service.playlistsProblem
        action: root.service.needsReauth ? "Neu anmelden" : "Erneut versuchen"
        canAct: root.service.needsReauth || (root.service.canSend && !root.service.loadingPlaylists)
        onActed: root.service.needsReauth ? root.auth.signIn() : root.service.loadPlaylists()
    }

    CardText {
        objectName: "noPlaylists"
        anchors.top: newButton.bottom
        x: Metrics.cardPadding
        visible: root.isEmpty && !root.service.needsReauth
        appearance: root.appearance
        text: "Keine Playlists."
        size: Metrics.captionSize
        color: root.appearance.secondary
    }

    FilteredModel {
        id: found

        source: search.isOpen ? root.service.playlists : null
        text: search.text
        searchedRoles: ["name"]
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

        objectName: "playlistList"
        anchors.top: search.bottom
        anchors.topMargin: search.isOpen ? Metrics.tightGap : 0
        anchors.bottom: parent.bottom
        width: parent.width
        visible: root.showsRows
        focus: true
        appearance: root.appearance
        model: search.isOpen ? found : root.service.playlists
        Accessible.name: "Playlists"
        onChosen: if (currentItem)
            (currentItem as MediaRow).clicked()

        header: Item {
            width: list.width
            height: liked.height + list.spacing

            MediaRow {
                id: liked

                objectName: "likedRow"
                width: parent.width
                appearance: root.appearance
                title: root.service.likedPlaylist.name
                subtitle: "Gespeicherte Titel"
                titleWeight: Font.DemiBold
                focusPolicy: Qt.TabFocus
                leading: likedTile
                trailing: chevron
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                onClicked: root.opened(root.service.likedPlaylist)
            }
        }

        delegate: MediaRow {
            id: row

            required property spotifyPlaylist playlist
            required property string name
            required property int trackCount
            required property url imageURL

            objectName: "playlistRow"
            width: list.width
            appearance: root.appearance
            title: name
            subtitle: trackCount + " Titel"
            trailing: chevron
            onClicked: root.opened(playlist)
            leading: CoverTile {
                appearance: root.appearance
                covers: root.covers
                url: row.imageURL
            }
        }
    }

    Component {
        id: likedTile

        Rectangle {
            implicitWidth: 34
            implicitHeight: 34
            radius: 6
            gradient: Gradient {
                GradientStop {
                    position: 0
                    color: "#c56bf0"
                }
                GradientStop {
                    position: 1
                    color: "#5f6cf5"
                }
            }

            Symbol {
                anchors.centerIn: parent
                name: "heart.fill"
                size: 16
            }
        }
    }

    Component {
        id: chevron

        Symbol {
            name: "chevron.right"
            size: 12
            color: root.appearance.secondary
        }
    }
}
