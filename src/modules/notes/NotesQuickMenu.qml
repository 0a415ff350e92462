import QtQuick

import Randblatt.Controls
import Randblatt.Settings

// The choice between the scratch pad and the notes application.
Column {
    id: root

    required property AppSettings settings

    spacing: Metrics.tightGap

    QuickMenuRow {
        objectName: "scratchChoice"
        width: root.width
        symbol: "note.text"
        text: "Notizzettel"
        chosen: root.settings.notesMode === "scratch"
        onClicked: root.settings.notesMode = "scratch"
    }

    QuickMenuRow {
        objectName: "appleChoice"
        width: root.width
        symbol: "applelogo"
        text: "Apple Notizen"
        chosen: root.settings.notesMode === "apple"
        onClicked: root.settings.notesMode = "apple"
    }
}
