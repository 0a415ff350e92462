import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// The page with the notes: their list, the note that is open, or the composer, under a common header.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    readonly property bool composes: browsing.newNote.isOpen
    readonly property bool showsList: !composes && browsing.edit === null

    signal foldersWanted

    NotesHeader {
        id: header

        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        heading: root.composes ? "Neue Notiz" : root.browsing.edit?.name ?? "Notizen"
        folder: root.browsing.service.currentFolder
        hasBack: !root.showsList
        isLoading: root.browsing.service.isLoading
        composing: root.composes
        onClosed: root.browsing.back()
        onRefreshed: root.browsing.loadNotes()
        onComposerWanted: root.browsing.newNote.isOpen = true
        onFoldersWanted: root.foldersWanted()
    }

    CardText {
        id: status

        objectName: "statusMessage"
        anchors.top: header.bottom
        anchors.topMargin: 2
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        visible: text !== ""
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        wrapMode: Text.Wrap
        maximumLineCount: 3
        text: root.browsing.service.statusMessage
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Loader {
        anchors.top: status.visible ? status.bottom : header.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: parent.bottom
        width: parent.width
        focus: !root.showsList
        sourceComponent: root.composes ? composer : root.showsList ? null : detail
    }

    // Stays while a note is open, and with it the place in it.
    RowList {
        id: list

        objectName: "notesList"
        anchors.top: status.visible ? status.bottom : header.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: parent.bottom
        width: parent.width
        focus: root.showsList
        visible: root.showsList
        spacing: 1
        appearance: root.appearance
        model: root.browsing.service.notes
        Accessible.name: "Notizen"
        onChosen: if (currentItem)
            (currentItem as NotesRow).clicked()
        Keys.onRightPressed: root.foldersWanted()
        onVisibleChanged: if (visible && root.activeFocus)
            forceActiveFocus(Qt.OtherFocusReason)

        header: UnsavedRows {
            width: list.width
            appearance: root.appearance
            browsing: root.browsing
        }

        delegate: NotesRow {
            required property noteSummary note
            required property string name
            required property int index

            objectName: "noteRow"
            width: list.width
            appearance: root.appearance
            symbol: "note.text"
            text: name
            isUnsaved: root.browsing.unsavedIds.includes(note.id)
            trailingSymbol: "chevron.right"
            onClicked: {
                list.currentIndex = index
                root.browsing.open(note)
            }
        }
    }

    Component {
        id: detail

        NoteDetail {
            focus: true
            appearance: root.appearance
            browsing: root.browsing
        }
    }

    Component {
        id: composer

        NoteComposer {
            focus: true
            appearance: root.appearance
            browsing: root.browsing
        }
    }
}
