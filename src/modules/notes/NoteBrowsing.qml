import QtQml

import Randblatt.Notes

// What is open in the notes browser, and what was typed and is not saved yet.
QtObject {
    id: root

    required property NotesService service

    // How many notes are listed.
    readonly property int limit: 80

    // The note that is open, while `hasSelected`.
    property noteSummary selected
    property bool hasSelected: false
    property string editBody
    property bool loadingBody: false
    // As the note's text was read or saved last.
    property string savedBody
    // Counts what was opened: an answer to an earlier question is none to the latest.
    property int opening: 0

    property bool composing: false
    property string newTitle
    property string newBody
    // Blanks are no title.
    readonly property bool canCreate: /[^ \t]/.test(newTitle)

    function loadNotes(): void {
        service.loadNotes(limit)
    }

    function open(note: noteSummary): void {
        selected = note
        hasSelected = true
        loadingBody = true
        editBody = ""
        const asked = ++opening
        service.loadBody(note.id, text => {
            if (asked !== root.opening)
                return
            root.editBody = text
            root.savedBody = text
            root.loadingBody = false
        })
    }

    function close(): void {
        hasSelected = false
        loadingBody = false
        ++opening
    }

    function back(): void {
        if (composing)
            composing = false
        else
            close()
    }

    // While the text is not there, an empty one would take its place.
    function save(): void {
        if (!hasSelected || loadingBody)
            return
        const asked = opening
        const body = editBody
        service.saveBody(selected.id, selected.name, body, success => {
            if (success && asked === root.opening)
                root.savedBody = body
        })
    }

    function deleteSelected(): void {
        const asked = opening
        service.deleteNote(selected.id, success => {
            if (success && asked === root.opening)
                root.close()
        })
    }

    function create(): void {
        if (!canCreate)
            return
        service.createNote(newTitle, newBody, success => {
            if (!success)
                return
            root.composing = false
            root.newTitle = ""
            root.newBody = ""
        })
    }
}
