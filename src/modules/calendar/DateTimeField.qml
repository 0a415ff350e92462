import QtQuick

import Randblatt.Calendar
import Randblatt.Controls

// A date and time to type into. The up and down keys step the number under the cursor; the button at the end
// opens a month to choose the day from. What is typed is told with every letter.
FieldFrame {
    id: root

    required property string label
    // What stands in the field, and what it was last understood as.
    required property string typed
    required property date value
    // Why the text is not understood.
    property string problem

    signal edited(text: string)
    signal committed
    signal stepped(cursor: int, steps: int)
    signal dayChosen(year: int, month: int, day: int)

    function follow(): void {
        if (field.text !== typed)
            field.text = typed
    }

    function step(steps: int): void {
        const cursor = field.selectedText.length > 0 ? field.selectionStart : field.cursorPosition
        stepped(cursor, steps)
        if (problem !== "")
            return
        const section = DateTimeText.section(cursor)
        field.select(section.y, section.x)
    }

    implicitWidth: field.implicitWidth + monthButton.width + 8 + 4
    implicitHeight: Math.max(28, field.implicitHeight + 2 * 6)
    active: field.activeFocus
    border.color: problem !== "" ? appearance.destructive
                                 : active ? appearance.accent : appearance.rim
    onTypedChanged: follow()
    Component.onCompleted: follow()

    PlainTextField {
        id: field

        objectName: "dateTimeInput"
        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.right: monthButton.left
        height: parent.height
        implicitWidth: Math.ceil(widest.advanceWidth) + 6
        appearance: root.appearance
        activeFocusOnTab: true
        Accessible.name: root.label
        Accessible.description: root.problem

        onTextEdited: root.edited(text)
        onEditingFinished: root.committed()
        Keys.onUpPressed: root.step(1)
        Keys.onDownPressed: root.step(-1)

        TextMetrics {
            id: widest

            font: field.font
            text: "00.00.0000, 00:00"
        }
    }

    PlainButton {
        id: monthButton

        objectName: "monthButton"
        anchors.right: parent.right
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        symbol: "calendar"
        symbolSize: 14 * root.appearance.textScale
        color: root.appearance.secondary
        accent: root.appearance.accent
        text: "Tag wählen"
        onClicked: {
            root.committed()
            popup.openAt(root.value)
        }
    }

    MonthPopup {
        id: popup

        textScale: root.appearance.textScale
        x: root.width - width
        y: root.height + 4
        onChosen: (year, month, day) => root.dayChosen(year, month, day)
        onClosed: monthButton.forceActiveFocus(Qt.PopupFocusReason)
    }
}
