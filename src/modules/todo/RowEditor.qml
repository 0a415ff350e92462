import QtQuick

import Randblatt.Controls

// The field that changes a row's title, with the title selected and the keyboard in it.
PlainTextField {
    id: root

    // Return ends with a renaming, Escape without; leaving the field renames too, but not by key.
    signal finished(renames: bool, byKey: bool)

    objectName: "rowEditor"
    Accessible.name: "Titel"

    Keys.onEscapePressed: root.finished(false, true)
    onAccepted: root.finished(true, true)
    // Not at once: the field must not go while the focus is on its way.
    onEditingFinished: leaving.start()

    Component.onCompleted: {
        selectAll()
        forceActiveFocus(Qt.OtherFocusReason)
    }

    Timer {
        id: leaving

        interval: 0
        onTriggered: root.finished(true, false)
    }
}
