import QtQuick
import QtQuick.Templates as T

// An entry of a menu over a card: a symbol, if it has one, and a label, white on dark.
T.MenuItem {
    id: root

    required property real textScale
    property string symbol
    property color color: "white"

    width: ListView.view ? ListView.view.width : implicitWidth
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * 6
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    contentItem: Item {
        Symbol {
            id: mark

            x: 8
            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: root.symbol !== "" ? 14 * root.textScale : 0
            color: root.color
        }

        Text {
            id: label

            anchors.left: mark.right
            anchors.leftMargin: root.symbol !== "" ? 8 : 0
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
