import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// A column of the board: a header and its tasks as cards.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property TodoColumn column
    // Whether this is the page that the board shows; only its controls are reached by Tab.
    required property bool isShown
    required property TodoActions actions
    property string search
    readonly property int shownCount: cards.count
    required property bool hasPrevious
    required property bool hasNext

    // The field of the card that is being edited; null while none is.
    readonly property RowEditor editor: (cards.currentItem as KanbanCard)?.editor ?? null

    signal pageTurned(step: int)
    signal menuRequested(card: KanbanCard, byKeyboard: bool)
    signal deleted(taskId: var)

    function focusCard(index: int): void {
        cards.focusRow(index)
    }

    function showTask(taskId: var): void {
        cards.showTask(taskId)
    }

    // Takes the keyboard when the board has turned to this page by `step`.
    function takeKeyboard(step: int): void {
        if (cards.count > 0)
            cards.focusRow(cards.currentIndex)
        else
            pager.takeKeyboard(step)
    }

    function deleteCard(index: int, taskId: var): void {
        const hadFocus = cards.hasKeyboardAt(index)
        deleted(taskId)
        cards.keepPlace(index, hadFocus)
    }

    objectName: "kanbanColumn"

    Accessible.role: Accessible.Grouping
    Accessible.name: column.label + ", " + column.tasks.count

    TaskListView {
        id: cards

        objectName: "kanbanCards"
        anchors.fill: parent
        anchors.topMargin: header.height + 2
        appearance: root.appearance
        tasks: root.column.tasks
        search: root.search
        topMargin: 4
        spacing: 6
        Accessible.name: root.column.label

        delegate: KanbanCard {
            id: card

            width: cards.width
            appearance: root.appearance
            actions: root.actions
            isReachable: root.isShown
            onMenuRequested: byKeyboard => root.menuRequested(card, byKeyboard)
            onDeleted: root.deleteCard(index, taskId)
        }
    }

    CardText {
        objectName: "emptyColumn"
        anchors.top: cards.top
        width: parent.width
        padding: 16
        visible: root.column.tasks.count === 0
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        horizontalAlignment: Text.AlignHCenter
        text: "Keine Aufgaben"
    }

    Item {
        id: header

        width: parent.width
        height: Math.max(pager.implicitHeight, label.implicitHeight)

        Symbol {
            id: symbol

            x: Metrics.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            name: root.column.symbol
            size: 14 * root.appearance.textScale
            color: root.appearance.accent
        }

        CardText {
            id: label

            objectName: "columnLabel"
            anchors.left: symbol.right
            anchors.leftMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            font.weight: Font.Bold
            text: root.column.label
        }

        CardText {
            objectName: "columnCount"
            anchors.left: label.right
            anchors.leftMargin: Metrics.tightGap
            anchors.right: pager.left
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            size: 10
            color: root.appearance.secondary
            font.weight: Font.Medium
            text: root.column.tasks.count.toString()
        }

        ColumnPager {
            id: pager

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            isReachable: root.isShown
            hasPrevious: root.hasPrevious
            hasNext: root.hasNext
            onPageTurned: step => root.pageTurned(step)
        }
    }
}
