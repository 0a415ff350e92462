import QtQuick

import Randblatt.Controls
import Randblatt.Settings
import Randblatt.Todo

// The content of the to-do card: the field for new tasks above the list or the board.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property TodoActions actions
    required property AppSettings settings
    // The rows of the list.
    required property TodoTaskModel tasks
    // The TodoColumns of the board.
    required property var columns

    // What takes the text that is typed while nothing has the keyboard.
    readonly property Item typingTarget: (content.item as TodoListView)?.editor ?? (content.item as KanbanView)?.editor
                                         ?? addField.input
    readonly property bool showsBoard: settings.todoViewMode === "kanban"

    function turnPage(step: int): void {
        const board = content.item as KanbanView
        if (board)
            board.turnPage(step)
    }

    function add(): void {
        const title = actions.newTitle.text.trim()
        actions.add()
        if (title !== "")
            Voice.say(root, title + (showsBoard ? ": hinzugefügt unter „Offen“" : ": hinzugefügt"))
    }

    Keys.onPressed: event => {
        const turns = event.modifiers === Qt.ControlModifier
                    && (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
        if (turns)
            turnPage(event.key === Qt.Key_PageUp ? -1 : 1)
        const searches = event.matches(StandardKey.Find)
        if (searches)
            searchField.open()
        event.accepted = searches || (turns && showsBoard)
    }

    AddField {
        id: addField

        anchors.left: parent.left
        anchors.leftMargin: Metrics.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding
        appearance: root.appearance
        draft: root.actions.newTitle
        onSubmitted: root.add()
    }

    FilteredModel {
        id: found

        source: searchField.isOpen ? root.tasks : null
        text: searchField.text
        searchedRoles: ["title"]
    }

    SearchField {
        id: searchField

        anchors.top: addField.bottom
        anchors.topMargin: isOpen ? Metrics.tightGap : 0
        anchors.left: addField.left
        anchors.right: addField.right
        appearance: root.appearance
        found: found.count
        onAccepted: root.showsBoard ? (content.item as KanbanView).focusFirst()
                                    : (content.item as TodoListView).focusFirst()
        onClosed: Focus.give(content)
    }

    Loader {
        id: content

        anchors.top: searchField.bottom
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
            actions: root.actions
            tasks: root.tasks
            search: searchField.text.trim()
        }
    }

    Component {
        id: board

        KanbanView {
            appearance: root.appearance
            actions: root.actions
            columns: root.columns
            search: searchField.text.trim()
        }
    }
}
