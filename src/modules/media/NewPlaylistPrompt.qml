import QtQuick
import Randblatt.Controls
import Randblatt.Media

// Asks for a new playlist's name, in place of the player.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NewPlaylist newPlaylist
    required property SpotifyService service

    function takeFocus(): void {
        field.forceActiveFocus(Qt.OtherFocusReason)
        field.selectAll()
    }

    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: "Neue Playlist"
    Component.onCompleted: field.text = root.newPlaylist.name
    Keys.onEscapePressed: root.newPlaylist.close()

    Announcement {
        source: root
        text: failure.text
        isUrgent: true
    }

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Metrics.cardPadding, 340)
        spacing: root.height >= 150 ? Metrics.gap : Metrics.tightGap

        CardText {
            width: parent.width
            // In a low card what is said below the field matters more.
            visible: root.height >= 150 * Math.max(1, root.appearance.textScale)
            appearance: root.appearance
            text: "Neue Playlist"
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
        }

        Rectangle {
            width: parent.width
            height: field.implicitHeight + 2 * 7
            radius: Metrics.rowRadius
            color: root.appearance.alpha(0.08)
            border.width: 1
            border.color: field.activeFocus ? root.appearance.accent : root.appearance.rim

            PlainTextField {
                id: field

                objectName: "nameField"
                anchors.verticalCenter: parent.verticalCenter
                x: 10
                width: parent.width - 2 * x
                appearance: root.appearance
                placeholderText: "Name"
                maximumLength: 100
                focus: true
                readOnly: root.newPlaylist.isCreating
                onTextEdited: root.newPlaylist.name = text
                onAccepted: if (createButton.enabled)
                    root.newPlaylist.create()
            }
        }

        CardText {
            id: failure

            objectName: "createFailure"
            width: parent.width
            visible: text !== ""
            appearance: root.appearance
            text: root.newPlaylist.failure !== "" ? root.newPlaylist.failure
                : root.service.canSend ? "" : root.service.statusMessage
            size: Metrics.captionSize
            color: root.appearance.destructive
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Metrics.gap

            PlainButton {
                objectName: "cancelButton"
                anchors.verticalCenter: parent.verticalCenter
                text: "Abbrechen"
                color: root.appearance.foreground
                accent: root.appearance.accent
                onClicked: root.newPlaylist.close()
            }

            ProminentButton {
                id: createButton

                objectName: "createButton"
                text: root.newPlaylist.isCreating ? "Wird erstellt…" : "Erstellen"
                enabled: root.newPlaylist.name.trim() !== "" && !root.newPlaylist.isCreating
                         && root.service.canSend
                onClicked: root.newPlaylist.create()
            }
        }
    }
}
