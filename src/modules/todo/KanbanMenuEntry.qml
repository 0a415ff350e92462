import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// An entry of a card's menu: symbol and label, white on dark.
T.MenuItem {
    id: root

    required property real textScale
    property string symbol
    property color color: "white"

    width: ListView.view ? ListView.view.width : implicitWidth
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * 6

    Accessible.role: Accessible.MenuItem
    Accessible.name: text

    contentItem: Item {
        Symbol {
            id: mark

            x: 8
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: 14 * root.textScale
            color: root.color
        }

        Text {
            id: label

            anchors.left: mark.right
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: root.color
            font.pixelSize: Metrics.bodySize * root.textScale
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }
    }

    background: Rectangle {
        radius: 6
        color: Qt.rgba(1, 1, 1, root.highlighted || root.hovered ? 0.14 : 0)
    }
}
