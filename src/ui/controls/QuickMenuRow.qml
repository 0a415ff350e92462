import QtQuick
import QtQuick.Templates as T

// One choice of a module's quick menu: symbol, label and, on the chosen row, a check mark. White on dark.
T.AbstractButton {
    id: root

    property string symbol
    property color accent: "#8c73ff"

    implicitWidth: 220
    implicitHeight: label.implicitHeight + 2 * 6
    focusPolicy: Qt.TabFocus
    checkable: false

    Accessible.role: Accessible.RadioButton
    Accessible.name: text
    Accessible.checked: checked
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        Item {
            id: symbolFrame

            x: 8
            width: 16
            height: parent.height

            Symbol {
                anchors.centerIn: parent
                name: root.symbol
                size: 15
            }
        }

        Text {
            id: label

            anchors.left: symbolFrame.right
            anchors.leftMargin: 8
            anchors.right: check.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: "white"
            font.pixelSize: Metrics.bodySize
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        Symbol {
            id: check

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.checked
            name: "checkmark"
            size: 11
        }
    }

    background: Rectangle {
        radius: Metrics.rowRadius
        color: root.checked ? Qt.rgba(root.accent.r, root.accent.g, root.accent.b, 0.4)
                            : Qt.rgba(1, 1, 1, root.hovered ? 0.16 : 0.1)

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
