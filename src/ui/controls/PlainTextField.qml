import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A single-line text field without a frame of its own, for a card.
T.TextField {
    id: root

    required property CardAppearance appearance
    // Size in points at text scale 1.
    property real size: Metrics.bodySize

    implicitWidth: 120
    implicitHeight: Math.ceil(contentHeight)
    color: appearance.foreground
    placeholderTextColor: appearance.tertiary
    selectionColor: appearance.selection
    selectedTextColor: "white"
    selectByMouse: true
    validator: SingleLine {}
    verticalAlignment: TextInput.AlignVCenter
    // As all other texts; a template would take the theme's font for text fields.
    font.family: placeholder.font.family
    font.pixelSize: Math.max(1, Math.round(size * appearance.textScale * 4) / 4)

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    Text {
        id: placeholder

        anchors.fill: parent
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        color: root.placeholderTextColor
        font.pixelSize: root.font.pixelSize
        elide: Text.ElideRight
        verticalAlignment: root.verticalAlignment
        textFormat: Text.PlainText
    }

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }

    TextMenu {
        field: root
        appearance: root.appearance
    }
}
