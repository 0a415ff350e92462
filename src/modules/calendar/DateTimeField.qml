import QtQuick

import Randblatt.Calendar
import Randblatt.Controls

// A date and time to type into. The up and down keys step the number under the cursor; the button at the end
// opens a month to choose the day from.
FieldFrame {
    id: root

    required property string label
    property date value

    signal edited(value: date)

    // Takes what has been typed; a text that is no time is put back.
    function commit(): void {
        const typed = DateTimeText.parsed(field.text, value)
        if (typed.getTime() !== value.getTime())
            edited(typed)
        field.text = DateTimeText.text(value)
    }

    function step(steps: int): void {
        commit()
        const cursor = field.selectedText.length > 0 ? field.selectionStart : field.cursorPosition
        edited(DateTimeText.stepped(value, cursor, steps))
        const section = DateTimeText.section(cursor)
        field.select(section.y, section.x)
    }

    implicitWidth: field.implicitWidth + monthButton.width + 8 + 4
    implicitHeight: Math.max(28, field.implicitHeight + 2 * 6)
    active: field.activeFocus
    onValueChanged: field.text = DateTimeText.text(value)
    Component.onCompleted: field.text = DateTimeText.text(value)

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

        onEditingFinished: root.commit()
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
            root.commit()
            popup.openAt(root.value)
        }
    }

    MonthPopup {
        id: popup

        textScale: root.appearance.textScale
        x: root.width - width
        y: root.height + 4
        onChosen: (year, month, day) => root.edited(DateTimeText.onDay(root.value, year, month, day))
        onClosed: monthButton.forceActiveFocus(Qt.PopupFocusReason)
    }
}
