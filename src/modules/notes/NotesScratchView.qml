import QtQuick

import Randblatt.Controls
import Randblatt.Notes
import Randblatt.Settings

// A pad for plain text that is kept in the settings with every keystroke.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property AppSettings settings

    // Takes what is typed while nothing has the keyboard.
    readonly property Item typingTarget: editor.input

    NoteEditor {
        id: editor

        objectName: "scratchPad"
        anchors.fill: parent
        anchors.margins: 10
        focus: true
        appearance: root.appearance
        name: "Notizzettel"
        placeholder: "Schreib hier rein …"
        Component.onCompleted: {
            load(root.settings.notesScratch)
            pad.join()
        }
    }

    ScratchPad {
        id: pad

        document: editor.content
        settings: root.settings
    }
}
