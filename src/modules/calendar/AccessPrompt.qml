import QtQuick

import Randblatt.Controls

// Stands in for the agenda while there is no access to the calendars.
Column {
    id: root

    required property CardAppearance appearance
    required property string message
    required property bool loading

    signal accessWanted

    spacing: Metrics.gap
    topPadding: Metrics.gap

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "calendar.badge.exclamationmark"
        size: 28 * root.appearance.textScale
        color: root.appearance.secondary
    }

    CardText {
        objectName: "accessMessage"
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        size: Metrics.calloutSize
        color: root.appearance.secondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: root.message
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    ProminentButton {
        objectName: "accessButton"
        anchors.horizontalCenter: parent.horizontalCenter
        accent: root.appearance.accent
        textSize: Metrics.bodySize * root.appearance.textScale
        text: "Zugriff anfragen"
        onClicked: root.accessWanted()

        BusyMark {
            anchors.left: parent.right
            anchors.leftMargin: Metrics.gap
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            running: root.loading && root.visible
        }
    }
}
