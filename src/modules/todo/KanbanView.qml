import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// The tasks as a board: a column per status, each as wide as the view, and pages to turn between them.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property TodoActions actions
    // The TodoColumns.
    required property var columns
    property string search

    // Goes to the first card that is shown, on whichever page.
    function focusFirst(): void {
        const page = columns.findIndex((_, index) => (pages.itemAtIndex(index) as KanbanColumn)?.shownCount > 0)
        if (page < 0)
            return
        pages.currentIndex = page
        (pages.currentItem as KanbanColumn).focusCard(0)
    }

    // The field of the card that is being edited; null while none is.
    readonly property RowEditor editor: (pages.currentItem as KanbanColumn)?.editor ?? null

    function turnPage(step: int): void {
        const page = pages.currentIndex + step
        if (page < 0 || page >= pages.count)
            return
        const hadFocus = activeFocus
        pages.currentIndex = page
        if (hadFocus)
            (pages.currentItem as KanbanColumn).takeKeyboard(step)
    }

    // Turns to the page of a task that is back.
    function showReturned(taskId: var): void {
        const page = columns.findIndex(column => column.tasks.rowOfTask(taskId) >= 0)
        if (page < 0)
            return
        const hadFocus = activeFocus
        pages.currentIndex = page
        const column = pages.currentItem as KanbanColumn
        column.showTask(taskId)
        if (hadFocus && column.editor !== null)
            column.editor.takeKeyboard(false)
        else if (hadFocus)
            column.takeKeyboard(0)
    }

    // What is being edited goes on here.
    Component.onCompleted: showReturned(actions.editedTask)

    function openMenu(column: KanbanColumn, card: KanbanCard, byKeyboard: bool): void {
        menuLoader.active = true
        menuLoader.column = column
        menuLoader.index = card.index
        menuLoader.taskId = card.taskId
        const menu = menuLoader.item as KanbanCardMenu
        const corner = card.mapToItem(root, card.width, card.height / 2)
        menu.openAt(corner.x - Metrics.cardPadding, corner.y + 12, byKeyboard)
    }

    Connections {
        target: root.actions

        function onReturned(id: var): void {
            root.showReturned(id)
        }
    }

    Keys.onLeftPressed: turnPage(-1)
    Keys.onRightPressed: turnPage(1)

    ListView {
        id: pages

        objectName: "kanbanPages"
        anchors.fill: parent
        focus: true
        model: root.columns
        orientation: ListView.Horizontal
        snapMode: ListView.SnapOneItem
        highlightRangeMode: ListView.StrictlyEnforceRange
        preferredHighlightBegin: 0
        preferredHighlightEnd: 0
        highlightMoveDuration: Metrics.duration(200)
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        // The other columns are made after the first frame and keep their places from then on.
        cacheBuffer: 2 * width
        clip: true
        Accessible.role: Accessible.Pane
        Accessible.name: "Kanban-Tafel"

        onWidthChanged: positionViewAtIndex(currentIndex, ListView.Beginning)

        PageWheel {
            onTurned: step => root.turnPage(step)
        }

        delegate: KanbanColumn {
            id: page

            required property TodoColumn modelData
            required property int index

            width: pages.width
            height: pages.height
            appearance: root.appearance
            column: modelData
            actions: root.actions
            search: root.search
            isShown: ListView.isCurrentItem
            hasPrevious: index > 0
            hasNext: index < pages.count - 1
            onPageTurned: step => root.turnPage(step)
            onMenuRequested: (card, byKeyboard) => root.openMenu(page, card, byKeyboard)
            onDeleted: taskId => root.actions.deleteTask(taskId)
        }
    }

    Item {
        anchors.fill: parent

        PageWheel {
            isShifted: true
            onTurned: step => root.turnPage(step)
        }
    }

    Loader {
        id: menuLoader

        property KanbanColumn column
        property int index
        property var taskId

        active: false
        sourceComponent: KanbanCardMenu {
            parent: root
            textScale: root.appearance.textScale
            columns: root.columns
            onStatusChosen: status => root.actions.setStatusName(menuLoader.taskId, status)
            onDeleteChosen: root.actions.deleteTask(menuLoader.taskId)
            onClosed: menuLoader.column.focusCard(menuLoader.index)
        }
    }
}
