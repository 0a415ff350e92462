import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// Whether an event takes the whole day.
T.CheckBox {
    id: root

    required property CardAppearance appearance

    implicitWidth: implicitContentWidth + leftPadding
    implicitHeight: Math.max(24, implicitContentHeight)
    leftPadding: indicator.width + 8
    focusPolicy: Qt.TabFocus
    Accessible.name: text

    Keys.onReturnPressed: toggleByKey()
    Keys.onEnterPressed: toggleByKey()

    function toggleByKey(): void {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        width: Math.round(16 * root.appearance.textScale)
        height: width
        anchors.verticalCenter: parent.verticalCenter
        radius: 4
        color: root.checked ? root.appearance.accent : root.appearance.alpha(root.hovered ? 0.14 : 0.08)
        border.width: 1
        border.color: root.appearance.alpha(0.3)

        Symbol {
            anchors.centerIn: parent
            visible: root.checked
            name: "checkmark"
            size: parent.width - 5
            color: "white"
        }

        FocusRing {
            visible: root.visualFocus
            accent: root.appearance.accent
        }
    }

    contentItem: CardText {
        appearance: root.appearance
        text: root.text
    }

    background: Item {
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
