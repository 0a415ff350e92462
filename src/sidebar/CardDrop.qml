import QtQuick

import Randblatt.Controls
import Randblatt.Settings

// Takes what is dropped on a card whose module wants it, and says beforehand what it will do with it.
DropArea {
    id: root

    required property SidebarModule module
    required property color tint

    // What the module would do with what lies over the card; empty where it wants nothing of it.
    property string offer

    // The original stays where it is: never by moving.
    function action(actions: int): int {
        return actions & Qt.CopyAction ? Qt.CopyAction : actions & Qt.LinkAction
    }

    objectName: "cardDrop"
    onEntered: drag => {
        const action = root.action(drag.supportedActions)
        offer = action === Qt.IgnoreAction ? "" : module.dropOffer(drag.hasText, drag.hasUrls ? drag.urls : [])
        if (offer === "")
            drag.accepted = false
        else
            drag.accept(action)
    }
    onExited: offer = ""
    onDropped: drop => {
        offer = ""
        if (module.takeDrop(drop.hasText ? drop.text : "", drop.hasUrls ? drop.urls : []))
            drop.accept(root.action(drop.supportedActions))
        else
            drop.accepted = false
    }

    Rectangle {
        objectName: "dropMark"
        anchors.fill: parent
        visible: root.offer !== ""
        radius: 18
        color: Qt.rgba(root.tint.r, root.tint.g, root.tint.b, 0.22)
        border.width: 2
        border.color: root.tint

        Rectangle {
            anchors.centerIn: parent
            width: Math.min(words.implicitWidth + 2 * 14, parent.width - 2 * 14)
            height: words.implicitHeight + 2 * 8
            radius: height / 2
            color: Qt.rgba(0.12, 0.12, 0.2, 0.97)
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, 0.18)

            Text {
                id: words

                anchors.centerIn: parent
                width: Math.min(implicitWidth, parent.width - 2 * 14)
                text: root.offer
                color: "white"
                font.pixelSize: Metrics.bodySize
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }
        }
    }
}
