import QtQuick

import Randblatt.Controls

// One thing that is known of an event, under a label where it does not speak for itself; not there without.
Column {
    id: root

    required property CardAppearance appearance
    required property string text
    property string label

    width: parent.width
    spacing: 1
    visible: text !== ""
    Accessible.role: Accessible.StaticText
    Accessible.name: label !== "" ? label + ": " + text : text

    CardText {
        visible: root.label !== ""
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        text: root.label
        Accessible.ignored: true
    }

    CardText {
        width: parent.width
        appearance: root.appearance
        wrapMode: Text.Wrap
        text: root.text
        Accessible.ignored: true
    }
}
