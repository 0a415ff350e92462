import QtQuick
import QtQuick.Templates as T

// A scrolling list of rows that the keyboard goes through: the arrow keys make another row current, and the
// current one takes Return and Delete.
ListView {
    id: root

    required property CardAppearance appearance

    // The current row was chosen, or is to be removed, with the keyboard.
    signal chosen
    signal removed

    reuseItems: true
    clip: true
    spacing: 4
    boundsBehavior: Flickable.StopAtBounds
    bottomMargin: Metrics.cardPadding
    activeFocusOnTab: true
    currentIndex: -1
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: true

    T.ScrollBar.vertical: CardScrollBar {
        appearance: root.appearance
    }

    Accessible.role: Accessible.List

    onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0)
        currentIndex = 0
    onCurrentIndexChanged: if (currentIndex >= 0)
        positionViewAtIndex(currentIndex, ListView.Contain)

    Keys.onReturnPressed: root.chosen()
    Keys.onEnterPressed: root.chosen()
    Keys.onSpacePressed: root.chosen()
    Keys.onDeletePressed: root.removed()
}
