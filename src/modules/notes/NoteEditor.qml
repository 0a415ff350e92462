import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Notes

// A scrolling editor for plain text on a darkened ground. The text is its user's, with all that can be undone.
FocusScope {
    id: root

    required property CardAppearance appearance
    // What assistive tools call the editor.
    required property string name
    property string placeholder

    property EditedText content: null

    readonly property Item input: area
    readonly property real textSize: Math.round(14 * appearance.textScale * 4) / 4

    EditedDocument {
        id: document

        editor: area
        text: root.content
    }

    Rectangle {
        anchors.fill: parent
        radius: 10
        color: root.appearance.highContrast ? "transparent" : Qt.rgba(0, 0, 0, 0.22)
        border.width: area.activeFocus || root.appearance.highContrast ? 1 : 0
        border.color: area.activeFocus ? root.appearance.accent : root.appearance.rim
    }

    Flickable {
        id: view

        anchors.fill: parent
        anchors.margins: 6
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        T.ScrollBar.vertical: CardScrollBar {
            appearance: root.appearance
        }

        // Keeps the cursor in view and gives the editor all of the ground.
        T.TextArea.flickable: T.TextArea {
            id: area

            // The text's, where the editor's own would be.
            property bool canUndo: root.content?.canUndo ?? false

            objectName: "textArea"
            focus: true
            activeFocusOnTab: true
            leftPadding: 7
            rightPadding: 7
            topPadding: 8
            bottomPadding: 8
            color: root.appearance.foreground
            selectionColor: root.appearance.selection
            selectedTextColor: "white"
            selectByMouse: true
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            // As all other texts; a template would take the theme's font for editors.
            font.family: hint.font.family
            font.pixelSize: root.textSize

            Accessible.role: Accessible.EditableText
            Accessible.name: root.name
            Accessible.description: root.placeholder
            Accessible.multiLine: true

            onCursorPositionChanged: document.keepCursor()

            TextMenu {
                field: area
                appearance: root.appearance
            }

            // The editor is one control among others: Tab leads on.
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        }
    }

    Text {
        id: hint

        objectName: "placeholder"
        anchors.fill: parent
        leftPadding: 13
        rightPadding: 13
        topPadding: 14
        bottomPadding: 14
        // Text that an input method is still composing stands in its place as well.
        visible: area.length === 0 && area.preeditText === ""
        text: root.placeholder
        color: root.appearance.secondary
        font.pixelSize: root.textSize
        elide: Text.ElideRight
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
