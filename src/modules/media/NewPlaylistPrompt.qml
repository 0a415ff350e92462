import QtQuick
import Randblatt.Controls

// Asks for a new playlist's name, in place of the player.
FocusScope {
    id: root

    required property CardAppearance appearance

    signal created(name: string)
    signal closed

    function create(): void {
        root.created(field.text)
        root.closed()
    }

    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: "Neue Playlist"
    Component.onCompleted: field.forceActiveFocus(Qt.OtherFocusReason)
    Keys.onEscapePressed: root.closed()

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * 24, 280)
        spacing: Metrics.gap

        CardText {
            width: parent.width
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
            border.color: field.activeFocus ? root.appearance.accent : "transparent"

            PlainTextField {
                id: field

                objectName: "nameField"
                anchors.verticalCenter: parent.verticalCenter
                x: 10
                width: parent.width - 2 * x
                appearance: root.appearance
                placeholderText: "Name"
                maximumLength: 100
                onAccepted: root.create()
            }
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
                onClicked: root.closed()
            }

            ProminentButton {
                objectName: "createButton"
                text: "Erstellen"
                enabled: field.text.trim() !== ""
                onClicked: root.create()
            }
        }
    }
}
