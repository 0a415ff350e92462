import QtQuick

// Says what is wrong with a card's data, and offers what can be done about it.
Item {
    id: root

    required property CardAppearance appearance
    required property string message
    required property string action
    property bool isDismissible: false

    signal acted
    signal dismissed

    implicitHeight: column.implicitHeight + 2 * 8
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message

    Announcement {
        source: root
        text: root.message
        isUrgent: true
    }

    Rectangle {
        anchors.fill: parent
        radius: 10
        color: root.appearance.alpha(0.12)
        border.width: 1
        border.color: root.appearance.rim
    }

    Symbol {
        id: mark

        anchors.left: parent.left
        anchors.leftMargin: Metrics.gap
        anchors.top: parent.top
        anchors.topMargin: 9
        name: "exclamationmark.triangle"
        size: Math.round(14 * root.appearance.textScale)
        color: root.appearance.foreground
    }

    Column {
        id: column

        anchors.left: mark.right
        anchors.leftMargin: Metrics.tightGap
        anchors.right: parent.right
        anchors.rightMargin: Metrics.gap
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        CardText {
            objectName: "noticeMessage"
            width: parent.width
            appearance: root.appearance
            size: Metrics.calloutSize
            text: root.message
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }

        Row {
            spacing: Metrics.gap
            // The words stand under those above, not the buttons' edges.
            leftPadding: -act.reach

            PlainButton {
                id: act

                objectName: "noticeAction"
                text: root.action
                textSize: Metrics.calloutSize * root.appearance.textScale
                font.weight: Font.DemiBold
                color: root.appearance.foreground
                accent: root.appearance.accent
                onClicked: root.acted()
            }

            PlainButton {
                objectName: "noticeDismiss"
                visible: root.isDismissible
                text: "Verstanden"
                textSize: Metrics.calloutSize * root.appearance.textScale
                color: root.appearance.foreground
                accent: root.appearance.accent
                onClicked: root.dismissed()
            }
        }
    }
}
