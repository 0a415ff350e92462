import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// What was typed and not saved in notes that the list below does not show, and in the composer.
Column {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    spacing: 1
    bottomPadding: implicitHeight > 0 ? 1 : 0

    UnsavedRow {
        objectName: "newNoteRow"
        visible: !root.browsing.newNote.isEmpty
        symbol: "square.and.pencil"
        text: root.browsing.newNote.title.trim() === "" ? "Neue Notiz" : root.browsing.newNote.title
        onClicked: root.browsing.newNote.isOpen = true
    }

    Repeater {
        model: root.browsing.unlisted

        UnsavedRow {
            required property noteSummary modelData

            objectName: "unlistedRow"
            symbol: "note.text"
            text: modelData.name
            onClicked: root.browsing.open(modelData)
        }
    }

    component UnsavedRow: NotesRow {
        width: root.width
        appearance: root.appearance
        isUnsaved: true
        trailingSymbol: "chevron.right"
        focusPolicy: Qt.TabFocus
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
    }
}
