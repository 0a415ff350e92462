import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A scrolling editor for plain text on a darkened ground. The text is its user's: load() and take() put it in,
// edited() tells of every change that the user makes.
FocusScope {
    id: root

    required property CardAppearance appearance
    // What assistive tools call the editor.
    required property string name
    property string placeholder

    readonly property real textSize: Math.round(14 * appearance.textScale * 4) / 4
    property bool isTaking: false

    signal edited(text: string)

    // Starts over with `text`: there is nothing to undo.
    function load(text: string): void {
        isTaking = true
        area.text = text
        area.cursorPosition = 0
        isTaking = false
    }

    // Makes the text `text` by changing only what differs, so that the cursor keeps its place and the change
    // can be undone.
    function take(text: string): void {
        const present = area.text
        if (present === text)
            return
        const shorter = Math.min(present.length, text.length)
        let start = 0
        while (start < shorter && present[start] === text[start])
            ++start
        let tail = 0
        while (tail < shorter - start && present[present.length - 1 - tail] === text[text.length - 1 - tail])
            ++tail
        isTaking = true
        area.remove(start, present.length - tail)
        area.insert(start, text.slice(start, text.length - tail))
        isTaking = false
    }

    Rectangle {
        anchors.fill: parent
        radius: 10
        color: Qt.rgba(0, 0, 0, 0.22)
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

            objectName: "textArea"
            focus: true
            activeFocusOnTab: true
            leftPadding: 7
            rightPadding: 7
            topPadding: 8
            bottomPadding: 8
            color: root.appearance.foreground
            selectionColor: root.appearance.accent
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

            // The editor is one control among others: Tab leads on.
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

            onTextChanged: {
                if (!root.isTaking)
                    root.edited(text)
            }
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
