import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Todo

// The menu of a card: the statuses, and the deletion.
T.Menu {
    id: root

    required property CardAppearance appearance
    // The TodoColumns to move to.
    required property var columns

    // Whether the menu was opened by keyboard, and gives the keyboard back visibly.
    property bool byKeyboard: false

    signal statusChosen(status: string)
    signal deleteChosen

    // Opens the menu with its top right corner at the point, or as near as the window allows.
    function openAt(right: real, top: real, opensByKeyboard: bool): void {
        byKeyboard = opensByKeyboard
        x = right - width
        y = top
        open()
        currentIndex = opensByKeyboard ? 0 : -1
    }

    objectName: "cardMenu"
    width: 150 * Math.max(1, appearance.textScale)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 8
    focus: true

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: false
    }

    background: Rectangle {
        radius: 10
        color: Qt.rgba(0.12, 0.12, 0.2, 0.97)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }

    Instantiator {
        model: root.columns

        delegate: KanbanMenuEntry {
            required property TodoColumn modelData

            objectName: "menuItem-" + modelData.status
            textScale: root.appearance.textScale
            text: modelData.label
            symbol: modelData.symbol
            onTriggered: root.statusChosen(modelData.status)
        }

        onObjectAdded: (index, item) => root.insertItem(index, item as KanbanMenuEntry)
    }

    T.MenuSeparator {
        id: separator

        width: ListView.view ? ListView.view.width : implicitWidth
        implicitHeight: 9

        contentItem: Item {
            Rectangle {
                y: 4
                x: 8
                width: parent.width - 16
                height: 1
                color: Qt.rgba(1, 1, 1, 0.15)
            }
        }
    }

    KanbanMenuEntry {
        objectName: "menuItem-delete"
        textScale: root.appearance.textScale
        text: "Löschen"
        symbol: "trash"
        color: "#ff6b6b"
        onTriggered: root.deleteChosen()
    }
}
