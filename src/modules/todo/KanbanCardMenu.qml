import QtQuick

import Randblatt.Controls
import Randblatt.Todo

// The menu of a card: the statuses, and the deletion.
CardMenu {
    id: root

    // The TodoColumns to move to.
    required property var columns

    signal statusChosen(status: string)
    signal deleteChosen

    // Opens the menu with its top right corner at the point, or as near as the window allows.
    function openAt(right: real, top: real, opensByKeyboard: bool): void {
        x = right - width
        y = top
        open()
        currentIndex = opensByKeyboard ? 0 : -1
    }

    objectName: "cardMenu"

    Instantiator {
        model: root.columns

        delegate: MenuEntry {
            required property TodoColumn modelData

            objectName: "menuItem-" + modelData.status
            textScale: root.textScale
            text: modelData.label
            symbol: modelData.symbol
            onTriggered: root.statusChosen(modelData.status)
        }

        onObjectAdded: (index, item) => root.insertItem(index, item as MenuEntry)
    }

    MenuLine {}

    MenuEntry {
        objectName: "menuItem-delete"
        textScale: root.textScale
        text: "Löschen"
        symbol: "trash"
        color: "#ff8a8a"
        onTriggered: root.deleteChosen()
    }
}
