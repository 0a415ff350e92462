import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// A pad for plain text that is stored with every keystroke.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property EditedText pad

    // Takes what is typed while nothing has the keyboard.
    readonly property Item typingTarget: editor.input

    NoteEditor {
        id: editor

        objectName: "scratchPad"
        anchors.fill: parent
        anchors.margins: 10
        focus: true
        appearance: root.appearance
        content: root.pad
        name: "Notizzettel"
        placeholder: "Schreib hier rein …"
    }
}
