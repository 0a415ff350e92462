import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// The tasks as a list: the open ones, then the done ones under a header.
Item {
    id: root

    required property CardAppearance appearance
    required property TodoStore store
    required property TodoTaskModel tasks

    function toggle(index: int, taskId: var): void {
        const hadFocus = rows.hasKeyboardAt(index)
        store.toggleDone(taskId)
        rows.keepPlace(index, hadFocus)
    }

    function deleteRow(index: int, taskId: var): void {
        const hadFocus = rows.hasKeyboardAt(index)
        store.deleteItem(taskId)
        rows.keepPlace(index, hadFocus)
    }

    function removeDone(): void {
        const hadFocus = rows.activeFocus
        store.removeDone()
        rows.keepPlace(rows.currentIndex, hadFocus)
    }

    TaskListView {
        id: rows

        objectName: "todoList"
        anchors.fill: parent
        appearance: root.appearance
        tasks: root.tasks
        topMargin: 4
        spacing: 1
        Accessible.name: "Aufgaben"

        delegate: TodoRow {
            width: rows.width
            appearance: root.appearance
            onToggled: root.toggle(index, taskId)
            onRenamed: title => root.store.rename(taskId, title)
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
