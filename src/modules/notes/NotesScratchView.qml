import QtQuick

import Randblatt.Controls
import Randblatt.Settings

// A pad for plain text that is kept in the settings with every keystroke.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property AppSettings settings

    Connections {
        target: root.settings

        function onNotesScratchChanged(): void {
            editor.take(root.settings.notesScratch)
        }
    }

    NoteEditor {
        id: editor

        objectName: "scratchPad"
        anchors.fill: parent
        anchors.margins: 10
        focus: true
        appearance: root.appearance
        name: "Notizzettel"
        placeholder: "Schreib hier rein …"
        onEdited: text => root.settings.notesScratch = text
        Component.onCompleted: load(root.settings.notesScratch)
    }
}
