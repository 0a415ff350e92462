import QtQuick

import Randblatt.Controls

// The field for a new task; Return submits its text and empties it.
Rectangle {
    id: root

    required property CardAppearance appearance

    readonly property Item input: field

    signal submitted(title: string)

    implicitHeight: Math.max(32, field.implicitHeight + 2 * 8)
    radius: 9
    color: appearance.alpha(0.08)
    border.width: field.activeFocus ? 1 : 0
    border.color: appearance.accent

    TapHandler {
        onTapped: field.forceActiveFocus(Qt.MouseFocusReason)
    }

    Symbol {
        id: symbol

        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        name: "plus.circle.fill"
        size: 15 * root.appearance.textScale
        color: root.appearance.accent
    }

    PlainTextField {
        id: field

        objectName: "addField"
        anchors.left: symbol.right
        anchors.leftMargin: Metrics.tightGap
        anchors.right: parent.right
        anchors.rightMargin: 8
        height: parent.height
        appearance: root.appearance
        placeholderText: "Neue Aufgabe…"

        onAccepted: {
            root.submitted(text)
            clear()
        }
    }
}
