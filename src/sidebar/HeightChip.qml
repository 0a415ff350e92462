import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// One height preset of the quick settings.
T.RadioButton {
    id: root

    required property bool chosen
    property color accent: "#8c73ff"

    objectName: "heightChip"
    implicitHeight: label.implicitHeight + 2 * 5
    focusPolicy: Qt.TabFocus
    checked: chosen
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Text {
        id: label

        text: root.text
        color: "white"
        font.pixelSize: Metrics.sized(11)
        font.weight: Font.Medium
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    background: Rectangle {
        radius: 7
        color: root.chosen ? Qt.rgba(root.accent.r, root.accent.g, root.accent.b, 0.5)
                            : Qt.rgba(1, 1, 1, root.hovered ? 0.18 : 0.12)

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
