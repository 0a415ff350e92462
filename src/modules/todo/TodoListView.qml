import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// The tasks as a list: the open ones, then the done ones under a header.
Item {
    id: root

    required property CardAppearance appearance
    required property TodoActions actions
    required property TodoTaskModel tasks
    property string search

    // The field of the row that is being edited; null while none is.
    readonly property Item editor: (rows.currentItem as TodoRow)?.editor ?? null

    function focusFirst(): void {
        rows.focusRow(0)
    }

    function toggle(index: int, taskId: var): void {
        const hadFocus = rows.hasKeyboardAt(index)
        actions.toggleDone(taskId)
        rows.keepPlace(index, hadFocus)
    }

    function deleteRow(index: int, taskId: var): void {
        const hadFocus = rows.hasKeyboardAt(index)
        actions.deleteTask(taskId)
        rows.keepPlace(index, hadFocus)
    }

    function removeDone(): void {
        const hadFocus = rows.activeFocus
        actions.removeDone()
        rows.keepPlace(rows.currentIndex, hadFocus)
    }

    // A task that is back has the keyboard if the list has it; a field that is back takes it. A field that is
    // open elsewhere keeps it.
    function showReturned(taskId: var): void {
        const isEdited = actions.editedTask === taskId
        if (editor?.activeFocus && !isEdited)
            return
        rows.showTask(taskId)
        const row = rows.currentItem as TodoRow
        if (row && row.taskId === taskId && (isEdited || rows.activeFocus))
            row.takeKeyboard()
    }

    Component.onCompleted: rows.showTask(actions.editedTask)

    Connections {
        target: root.actions

        function onReturned(id: var): void {
            root.showReturned(id)
        }
    }

    TaskListView {
        id: rows

        objectName: "todoList"
        anchors.fill: parent
        appearance: root.appearance
        tasks: root.tasks
        search: root.search
        topMargin: 4
        spacing: 1
        Accessible.name: "Aufgaben"

        delegate: TodoRow {
            width: rows.width
            appearance: root.appearance
            actions: root.actions
            onToggled: root.toggle(index, taskId)
            onDeleted: root.deleteRow(index, taskId)
        }

        section.property: "group"
        section.delegate: DoneHeader {
            width: rows.width
            appearance: root.appearance
            onCleared: root.removeDone()
        }
    }

    Column {
        id: emptyState

        objectName: "emptyState"
        anchors.centerIn: parent
        width: parent.width - 2 * Metrics.cardPadding
        spacing: Metrics.tightGap
        visible: root.tasks.count === 0

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.height > 3 * size
            name: "checklist"
            size: 22 * root.appearance.textScale
            color: root.appearance.tertiary
        }

        CardText {
            width: parent.width
            appearance: root.appearance
            size: Metrics.captionSize
            color: root.appearance.secondary
            horizontalAlignment: Text.AlignHCenter
            text: "Noch keine Aufgaben"
        }
    }
}
