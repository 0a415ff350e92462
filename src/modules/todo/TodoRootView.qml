import QtQuick

import Randblatt.Controls
import Randblatt.Settings
import Randblatt.Todo

// The content of the to-do card: the field for new tasks above the list or the board.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property TodoStore store
    required property AppSettings settings
    // The rows of the list.
    required property TodoTaskModel tasks
    // The TodoColumns of the board.
    required property var columns

    // What takes the text that is typed while nothing has the keyboard.
    readonly property Item typingTarget: addField.input
    readonly property bool showsBoard: settings.todoViewMode === "kanban"

    function turnPage(step: int): void {
        const board = content.item as KanbanView
        if (board)
            board.turnPage(step)
    }

    Keys.onPressed: event => {
        const turns = event.modifiers === Qt.ControlModifier
                    && (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
        if (turns)
            turnPage(event.key === Qt.Key_PageUp ? -1 : 1)
        event.accepted = turns && showsBoard
    }

    AddField {
        id: addField

        anchors.left: parent.left
        anchors.leftMargin: Metrics.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding
        appearance: root.appearance
        onSubmitted: title => root.store.add(title)
    }

    Loader {
        id: content

        anchors.top: addField.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        sourceComponent: root.showsBoard ? board : list
    }

    Component {
        id: list

        TodoListView {
            appearance: root.appearance
            store: root.store
            tasks: root.tasks
        }
    }

    Component {
        id: board

        KanbanView {
            appearance: root.appearance
            store: root.store
            columns: root.columns
        }
    }
}
