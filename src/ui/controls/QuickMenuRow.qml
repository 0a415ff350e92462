import QtQuick
import QtQuick.Templates as T

// One choice of a module's quick menu: symbol, label and, on the chosen row, a check mark. White on dark.
T.RadioButton {
    id: root

    required property bool chosen
    property string symbol
    property color accent: "#c4b8ff"

    implicitWidth: 220
    implicitHeight: label.implicitHeight + 2 * 6
    focusPolicy: Qt.TabFocus
    checked: chosen

    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()

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
            font.pixelSize: Metrics.sized(Metrics.bodySize)
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        Symbol {
            id: check

            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            visible: root.chosen
            name: "checkmark"
            size: 11
        }
    }

    background: Rectangle {
        radius: Metrics.rowRadius
        color: root.chosen ? Qt.rgba(root.accent.r, root.accent.g, root.accent.b, 0.4)
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
