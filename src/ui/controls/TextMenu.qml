import QtQuick

import Randblatt.Controls

// What the right button over a text field offers; to be put into the field.
// qmllint disable unqualified
MouseArea {
    id: root

    // A TextField or TextArea.
    required property var field
    // Of the card that the field is in, if it is in one.
    property CardAppearance appearance: null
    readonly property real textScale: appearance?.textScale ?? Wishes.textScale

    function open(x: real, y: real): void {
        field.forceActiveFocus(Qt.MouseFocusReason)
        loader.active = true
        const menu = loader.item as CardMenu
        menu.x = x
        menu.y = y
        menu.open()
    }

    anchors.fill: parent
    acceptedButtons: Qt.RightButton
    cursorShape: Qt.IBeamCursor
    Accessible.ignored: true
    onPressed: mouse => open(mouse.x, mouse.y)

    Loader {
        id: loader

        active: false
        sourceComponent: CardMenu {
            objectName: "textMenu"
            parent: root
            textScale: root.textScale

            MenuEntry {
                objectName: "undoText"
                textScale: root.textScale
                text: "Rückgängig"
                enabled: root.field.canUndo && !root.field.readOnly
                onTriggered: TextKeys.press(root.field, StandardKey.Undo)
            }

            MenuLine {}

            MenuEntry {
                objectName: "cutText"
                textScale: root.textScale
                text: "Ausschneiden"
                enabled: root.field.selectedText !== "" && !root.field.readOnly
                onTriggered: TextKeys.press(root.field, StandardKey.Cut)
            }

            MenuEntry {
                objectName: "copyText"
                textScale: root.textScale
                text: "Kopieren"
                enabled: root.field.selectedText !== ""
                onTriggered: TextKeys.press(root.field, StandardKey.Copy)
            }

            MenuEntry {
                objectName: "pasteText"
                textScale: root.textScale
                text: "Einfügen"
                enabled: root.field.canPaste
                onTriggered: TextKeys.press(root.field, StandardKey.Paste)
            }

            MenuEntry {
                objectName: "selectText"
                textScale: root.textScale
                text: "Alles auswählen"
                enabled: root.field.length > 0
                onTriggered: TextKeys.press(root.field, StandardKey.SelectAll)
            }

            MenuLine {
                visible: root.appearance !== null
                height: visible ? implicitHeight : 0
            }

            MenuEntry {
                objectName: "cardOptions"
                textScale: root.textScale
                text: "Optionen…"
                visible: root.appearance !== null
                height: visible ? implicitHeight : 0
                onTriggered: root.appearance.optionsRequested()
            }
        }
    }
}
