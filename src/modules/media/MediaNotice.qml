import QtQuick
import Randblatt.Controls

// Says what stands in the way, and offers what can be done about it.
Column {
    id: root

    required property CardAppearance appearance
    required property string text
    required property string action
    property bool canAct: true

    signal acted

    spacing: Metrics.tightGap
    bottomPadding: Metrics.tightGap

    Announcement {
        source: root
        text: root.text
        isUrgent: true
    }

    CardText {
        objectName: "noticeText"
        width: root.width
        appearance: root.appearance
        text: root.text
        size: Metrics.captionSize
        color: root.appearance.secondary
        wrapMode: Text.Wrap
    }

    ProminentButton {
        objectName: "noticeButton"
        enabled: root.canAct
        text: root.action
        textSize: Metrics.calloutSize * root.appearance.textScale
        onClicked: root.acted()
    }
}
