import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// The page with the notes: their list, the note that is open, or the composer, under a common header.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    readonly property var unsavedIds: browsing.unsavedIds
    readonly property bool composes: browsing.newNote.isOpen
    readonly property bool showsList: !composes && browsing.edit === null

    signal foldersWanted

    // The folder that was shown before the search, which looks into all of them.
    property string formerFolder
    readonly property var searched: browsing.service.notes

    Keys.onPressed: event => {
        event.accepted = root.showsList && event.matches(StandardKey.Find)
        if (!event.accepted)
            return
        if (!search.isOpen) {
            formerFolder = browsing.service.currentFolder
            if (formerFolder !== "")
                browsing.chooseFolder("")
        }
        search.open()
    }

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
    }

    Announcement {
        source: root
        text: status.text
        isUrgent: true
    }

    Loader {
        anchors.top: status.visible ? status.bottom : header.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: parent.bottom
        width: parent.width
        focus: !root.showsList
        sourceComponent: root.composes ? composer : root.showsList ? null : detail
    }

    FilteredModel {
        id: found

        source: search.isOpen ? root.searched : null
        text: search.text
        searchedRoles: ["name"]
    }

    SearchField {
        id: search

        anchors.top: status.visible ? status.bottom : header.bottom
        anchors.topMargin: isOpen && root.showsList ? Metrics.tightGap : 0
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        opacity: root.showsList ? 1 : 0
        enabled: root.showsList
        appearance: root.appearance
        found: found.count
        onAccepted: list.focusRow(0)
        onClosed: {
            if (root.formerFolder !== "")
                root.browsing.chooseFolder(root.formerFolder)
            Focus.give(list)
        }
    }

    UnsavedRows {
        id: unsaved

        anchors.top: search.bottom
        anchors.topMargin: Metrics.tightGap
        width: parent.width
        height: Math.min(contentHeight, parent.height / 3)
        visible: root.showsList
        appearance: root.appearance
        browsing: root.browsing
    }

    // Stays while a note is open, and with it the place in it.
    RowList {
        id: list

        objectName: "notesList"
        anchors.top: unsaved.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        focus: root.showsList
        visible: root.showsList
        spacing: 1
        appearance: root.appearance
        model: search.isOpen ? found : root.browsing.service.notes
        Accessible.name: "Notizen"
        onChosen: if (currentItem)
            (currentItem as NotesRow).clicked()
        Keys.onRightPressed: root.foldersWanted()
        onVisibleChanged: if (visible && root.activeFocus)
            Focus.give(this)

        delegate: NotesRow {
            required property noteSummary note
            required property string name
            required property int index

            objectName: "noteRow"
            width: list.width
            appearance: root.appearance
            symbol: "note.text"
            text: name
            isUnsaved: root.unsavedIds.includes(note.id)
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
