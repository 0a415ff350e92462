import QtQuick

import Randblatt.Controls
import Randblatt.Settings

// The field for a new task, which shows its draft; Return submits it.
Rectangle {
    id: root

    required property CardAppearance appearance
    required property Draft draft

    readonly property Item input: field

    signal submitted

    implicitHeight: Math.max(32, field.implicitHeight + 2 * 8)
    radius: 9
    color: appearance.alpha(0.08)
    border.width: field.activeFocus || appearance.highContrast ? 1 : 0
    border.color: field.activeFocus ? appearance.accent : appearance.rim

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
        text: root.draft.text

        onTextChanged: root.draft.text = text
        onAccepted: root.submitted()
    }
}
