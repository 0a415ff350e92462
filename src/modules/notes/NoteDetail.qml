import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// The note that is open: its text to edit, and what can be done with it.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    // Null for a moment when the note is closed.
    readonly property NoteEdit edit: browsing.edit
    readonly property bool isLoading: edit?.isLoading ?? false
    readonly property bool isUnsaved: edit?.isUnsaved ?? false

    onIsLoadingChanged: if (!isLoading && activeFocus)
        editor.forceActiveFocus(Qt.OtherFocusReason)

    Keys.onEscapePressed: browsing.back()
    Keys.onBackPressed: browsing.back()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Save)
        if (event.accepted && !event.isAutoRepeat)
            edit?.save()
    }

    Announcement {
        source: root
        text: root.isUnsaved ? "" : root.edit?.state ?? ""
    }

    NoteNotice {
        id: notice

        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        text: root.edit?.notice ?? ""
        remedy: root.edit?.remedy ?? ""
        onRemedied: root.edit?.applyRemedy()
    }

    NoteEditor {
        id: editor

        objectName: "bodyEditor"
        anchors.top: notice.bottom
        anchors.bottom: actions.top
        anchors.bottomMargin: Metrics.tightGap
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        focus: true
        visible: !root.isLoading
        appearance: root.appearance
        content: root.edit?.text ?? null
        name: root.edit?.name ?? ""
    }

    BusyMark {
        objectName: "loadingBody"
        anchors.centerIn: editor
        appearance: root.appearance
        size: 18
        running: root.isLoading
    }

    Item {
        id: actions

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Metrics.gap
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        height: saveButton.height

        PlainButton {
            id: deleteButton

            objectName: "deleteButton"
            x: -reach
            anchors.verticalCenter: parent.verticalCenter
            text: "Notiz löschen"
            symbol: "trash"
            showsText: false
            color: root.appearance.destructive
            accent: root.appearance.accent
            onClicked: root.browsing.deleteOpen()

            ControlTip {
                control: deleteButton
            }
        }

        PlainButton {
            id: discardButton

            objectName: "discardButton"
            anchors.left: deleteButton.right
            anchors.leftMargin: 2
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isUnsaved
            enabled: !(root.edit?.isInFlight ?? false)
            text: "Verwerfen"
            textSize: Metrics.bodySize * root.appearance.textScale
            color: root.appearance.secondary
            accent: root.appearance.accent
            onClicked: root.edit?.discard()
        }

        CardText {
            objectName: "editState"
            anchors.left: discardButton.visible ? discardButton.right : deleteButton.right
            anchors.leftMargin: Metrics.tightGap
            anchors.right: saveButton.left
            anchors.rightMargin: Metrics.gap
            anchors.verticalCenter: parent.verticalCenter
            horizontalAlignment: Text.AlignRight
            appearance: root.appearance
            size: Metrics.captionSize
            color: root.appearance.secondary
            text: root.edit?.state ?? ""
        }

        ProminentButton {
            id: saveButton

            objectName: "saveButton"
            anchors.right: parent.right
            accent: root.appearance.accent
            textSize: Metrics.bodySize * root.appearance.textScale
            text: "Speichern"
            enabled: !root.isLoading
            onClicked: root.edit?.save()

            ControlTip {
                control: saveButton
            }
        }
    }
}
