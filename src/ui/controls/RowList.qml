import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A scrolling list of rows that the keyboard goes through: the arrow keys make another row current, and the
// current one takes Return and Delete. The rows are controls that leave their focus to the list.
ListView {
    id: root

    required property CardAppearance appearance

    // The current row was chosen, or is to be removed, with the keyboard.
    signal chosen
    signal removed

    // Makes the row at `index`, or the nearest there is, current and gives it the keyboard.
    function focusRow(index: int): void {
        if (count === 0)
            return
        const row = Math.max(0, Math.min(index, count - 1))
        positionViewAtIndex(row, ListView.Contain)
        currentIndex = row
        Focus.give(currentItem)
    }

    function step(event: KeyEvent, target: int): void {
        event.accepted = count > 0 && Math.max(0, Math.min(target, count - 1)) !== currentIndex
        if (event.accepted)
            focusRow(target)
    }

    reuseItems: true
    clip: true
    spacing: 4
    boundsBehavior: Flickable.StopAtBounds
    bottomMargin: Metrics.cardPadding
    activeFocusOnTab: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false

    T.ScrollBar.vertical: CardScrollBar {
        appearance: root.appearance
    }

    Accessible.role: Accessible.List

    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0)
        focusRow(0)
    onCurrentIndexChanged: if (currentIndex >= 0)
        positionViewAtIndex(currentIndex, ListView.Contain)

    Keys.onUpPressed: event => step(event, currentIndex - 1)
    Keys.onDownPressed: event => step(event, currentIndex + 1)
    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(count * height / Math.max(1, contentHeight)) - 1)
        const targets = {
            [Qt.Key_Home]: 0,
            [Qt.Key_End]: count - 1,
            [Qt.Key_PageUp]: currentIndex - page,
            [Qt.Key_PageDown]: currentIndex + page
        }
        if (event.key in targets && event.modifiers === Qt.NoModifier)
            step(event, targets[event.key])
    }
    Keys.onReturnPressed: root.chosen()
    Keys.onEnterPressed: root.chosen()
    Keys.onSpacePressed: root.chosen()
    Keys.onDeletePressed: root.removed()
}
