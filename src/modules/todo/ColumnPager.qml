import QtQuick

import Randblatt.Controls

// The sign that the board goes on sideways; its halves turn the page. Its right edge is that of the column.
Row {
    id: root

    required property CardAppearance appearance
    // Whether Tab leads here.
    required property bool isReachable
    required property bool hasPrevious
    required property bool hasNext

    // Several pages are turned by clicking at one place.
    readonly property bool takesQuickClicks: true

    signal pageTurned(step: int)

    // Gives the keyboard to the half that turns on by `step`, or back where there is no further page.
    function takeKeyboard(step: int): void {
        const onward = step > 0 ? next : previous
        const back = step > 0 ? previous : next
        const half = onward.enabled ? onward : back
        Focus.give(half)
    }

    ColumnPagerHalf {
        id: previous

        objectName: "previousColumn"
        step: -1
        text: "Vorherige Spalte"
        enabled: root.hasPrevious
        appearance: root.appearance
        isReachable: root.isReachable
        onClicked: root.pageTurned(step)
    }

    ColumnPagerHalf {
        id: next

        objectName: "nextColumn"
        step: 1
        text: "Nächste Spalte"
        enabled: root.hasNext
        appearance: root.appearance
        isReachable: root.isReachable
        onClicked: root.pageTurned(step)
    }
}
