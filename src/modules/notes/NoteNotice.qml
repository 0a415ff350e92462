import QtQuick

import Randblatt.Controls

// Says what has to be known about a note, and offers what can be done about it.
Item {
    id: root

    required property CardAppearance appearance
    required property string text
    // Empty where nothing can be done.
    property string remedy

    signal remedied

    implicitHeight: text === "" ? 0 : label.height + (button.visible ? button.height : 0) + Metrics.tightGap
    visible: text !== ""

    Announcement {
        source: root
        text: root.text
        isUrgent: true
    }

    CardText {
        id: label

        objectName: "notice"
        width: parent.width
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        wrapMode: Text.Wrap
        maximumLineCount: 3
        text: root.text
        Accessible.role: Accessible.AlertMessage
    }

    PlainButton {
        id: button

        objectName: "remedyButton"
        x: -reach
        anchors.top: label.bottom
        visible: root.remedy !== ""
        text: root.remedy
        textSize: Metrics.captionSize * root.appearance.textScale
        font.weight: Font.DemiBold
        color: root.appearance.foreground
        accent: root.appearance.accent
        reach: 3
        onClicked: root.remedied()
    }
}
