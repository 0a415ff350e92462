import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Todo

// A scrolling list of tasks: one row is current and takes the keyboard, the arrow keys make another one current.
// The rows are items that leave their focus to the list.
ListView {
    id: root

    required property CardAppearance appearance
    required property TodoTaskModel tasks
    // Only the tasks in whose titles this is found are shown; empty for all.
    property string search

    readonly property FilteredModel found: FilteredModel {
        source: root.search === "" ? null : root.tasks
        text: root.search
        searchedRoles: ["title"]
    }

    function shownRow(row: int): int {
        return search === "" ? row : found.rowFrom(row)
    }

    // Makes the row at `index`, or the nearest there is, current and gives it the keyboard.
    function focusRow(index: int): void {
        forceLayout()
        if (count === 0)
            return
        currentIndex = Math.max(0, Math.min(index, count - 1))
        positionViewAtIndex(currentIndex, ListView.Contain)
        Focus.give(currentItem)
    }

    // For a row that an operation has moved or removed: the keyboard stays at its place.
    function keepPlace(index: int, hadFocus: bool): void {
        if (hadFocus)
            focusRow(index)
    }

    // Shows the task's row, if there is one here, and makes it the current one.
    function showTask(taskId: var): void {
        const row = shownRow(tasks.rowOfTask(taskId))
        if (row < 0)
            return
        reveal.stop()
        forceLayout()
        currentIndex = row
        positionViewAtIndex(row, ListView.Contain)
    }

    function hasKeyboardAt(index: int): bool {
        return activeFocus && index === currentIndex
    }

    function step(event: KeyEvent, target: int): void {
        event.accepted = target >= 0 && target < count
        if (event.accepted)
            focusRow(target)
    }

    model: search === "" ? tasks : found
    reuseItems: true
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    bottomMargin: Metrics.cardPadding
    // Moving is up to step(): the view must not scroll when an operation moves the current row.
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false

    T.ScrollBar.vertical: CardScrollBar {
        appearance: root.appearance
    }

    Accessible.role: Accessible.List

    // The row that has the keyboard stays in sight.
    onHeightChanged: {
        if (activeFocus)
            positionViewAtIndex(currentIndex, ListView.Contain)
    }

    Keys.onUpPressed: event => step(event, currentIndex - 1)
    Keys.onDownPressed: event => step(event, currentIndex + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            step(event, 0)
        else if (event.key === Qt.Key_End)
            step(event, count - 1)
    }

    Connections {
        target: root.tasks

        function onRowsInserted(parent: var, first: int, last: int): void {
            reveal.row = last
            reveal.start()
        }
    }

    // Shows a new row, once the view has heard of it too.
    Timer {
        id: reveal

        property int row: 0

        interval: 0
        onTriggered: {
            const shown = Math.min(root.shownRow(row), root.count - 1)
            if (shown >= 0)
                root.positionViewAtIndex(shown, ListView.Contain)
        }
    }
}
