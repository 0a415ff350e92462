import QtQuick

import Randblatt.Controls
import Randblatt.Notes
import Randblatt.Settings

// The content of the notes card: the scratch pad or the browser.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NotesService service
    required property NoteBrowsing browsing
    required property EditedText pad
    required property AppSettings settings

    // What takes the text that is typed while nothing has the keyboard.
    readonly property Item typingTarget: (scratch.item as NotesScratchView)?.typingTarget ?? null
    readonly property bool browses: settings.notesMode === "apple"

    Loader {
        id: scratch

        anchors.fill: parent
        active: !root.browses
        focus: active
        sourceComponent: NotesScratchView {
            focus: true
            appearance: root.appearance
            pad: root.pad
        }
    }

    // Stays, once it was made, with its place in the list.
    Loader {
        id: browser

        property bool wasShown: false

        anchors.fill: parent
        active: root.browses || wasShown
        visible: root.browses
        focus: root.browses
        onLoaded: wasShown = true
        sourceComponent: NotesView {
            focus: true
            appearance: root.appearance
            browsing: root.browsing
        }
    }
}
