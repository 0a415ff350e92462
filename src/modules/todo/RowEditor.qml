import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// The field that changes a task's title: it shows what is being typed, which the actions keep.
PlainTextField {
    id: root

    required property TodoActions actions

    // Return or Escape was pressed: the row ends the editing, and the field goes.
    signal finished(renames: bool)

    function takeKeyboard(selects: bool): void {
        if (selects)
            selectAll()
        forceActiveFocus(Qt.OtherFocusReason)
    }

    objectName: "rowEditor"
    text: actions.editText
    Accessible.name: "Titel"

    Keys.onEscapePressed: root.finished(false)
    onTextChanged: actions.editText = text
    onAccepted: root.finished(true)
    // Not at once: the field must not go while the focus is on its way.
    onEditingFinished: leaving.start()

    Timer {
        id: leaving

        interval: 0
        // Whoever leaves the window, or whom it leaves, goes on later.
        onTriggered: {
            if (!root.activeFocus && root.Window.active)
                root.actions.commitEdit()
        }
    }
}
