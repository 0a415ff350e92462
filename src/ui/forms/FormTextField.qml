import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A line of text to edit.
T.TextField {
    id: root

    property string name: placeholderText

    implicitWidth: 220
    implicitHeight: FormStyle.sized(32)
    leftPadding: 10
    rightPadding: 10
    color: FormStyle.text
    selectionColor: FormStyle.accent
    selectedTextColor: FormStyle.accentText
    placeholderTextColor: FormStyle.alpha(0.5)
    selectByMouse: true
    validator: SingleLine {}
    verticalAlignment: TextInput.AlignVCenter
    font.pixelSize: FormStyle.bodySize
    Accessible.role: Accessible.EditableText
    Accessible.name: name

    background: Rectangle {
        radius: 7
        color: FormStyle.dark ? Qt.darker(FormStyle.card, 1.3) : FormStyle.face
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? FormStyle.accent : FormStyle.highContrast ? FormStyle.rim
                                                             : FormStyle.alpha(root.hovered ? 0.32 : 0.22)

        Text {
            anchors.fill: parent
            anchors.leftMargin: root.leftPadding
            anchors.rightMargin: root.rightPadding
            visible: root.length === 0 && root.preeditText === ""
            text: root.placeholderText
            color: root.placeholderTextColor
            font: root.font
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.PlainText
        }
    }

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }

    TextMenu {
        field: root
    }
}
