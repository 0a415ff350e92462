import QtQuick

import Randblatt.Controls

// The header above the done tasks, with the button that deletes them all. The open tasks have none: for their
// section it takes no space.
Item {
    id: root

    required property CardAppearance appearance
    // The group that follows, as the view tells it.
    required property string section

    readonly property bool isDone: section === "1"

    signal cleared

    implicitHeight: isDone ? Math.max(clearButton.implicitHeight, title.implicitHeight) + 2 * 5 : 0

    CardText {
        id: title

        objectName: "doneHeader"
        anchors.left: parent.left
        anchors.leftMargin: Metrics.cardPadding
        anchors.right: clearButton.left
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isDone
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        font.weight: Font.DemiBold
        text: "Erledigt"
        Accessible.role: Accessible.Heading
    }

    PlainButton {
        id: clearButton

        objectName: "clearButton"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding - reach
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isDone
        text: "Löschen"
        textSize: Metrics.captionSize * root.appearance.textScale
        color: root.appearance.accent
        accent: root.appearance.accent
        Accessible.description: "Löscht alle erledigten Aufgaben"
        onClicked: root.cleared()
    }
}
