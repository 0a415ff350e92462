import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// The button for what a view most wants the user to do: a filled, rounded bar.
T.AbstractButton {
    id: root

    property color accent: "#c4b8ff"
    property string symbol
    property real textSize: Metrics.sized(Metrics.bodySize)

    implicitWidth: contentItem.implicitWidth + 2 * 14
    implicitHeight: Math.max(28, contentItem.implicitHeight + 2 * 6)
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 6

            Symbol {
                visible: root.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: root.symbol
                size: root.textSize + 2
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                color: "white"
                font.pixelSize: root.textSize
                font.weight: Font.Medium
                textFormat: Text.PlainText
            }
        }
    }

    background: Rectangle {
        radius: Metrics.rowRadius
        readonly property color ground: Wishes.highContrast ? "#4a31c4" : "#6a50e6"

        color: root.down ? Qt.darker(ground, 1.2) : root.hovered ? Qt.lighter(ground, 1.08) : ground
        border.width: Wishes.highContrast ? 1 : 0
        border.color: "white"

        FocusRing {
            visible: root.visualFocus
            accent: root.accent
        }

        // Not on the button itself: with a handler it would take the right mouse button as well.
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
