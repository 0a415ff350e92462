import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A task of the board: its title and the button of its menu.
T.Control {
    id: root

    required property CardAppearance appearance
    required property int index
    required property var taskId
    required property string title
    // Whether Tab leads here when the card is current.
    required property bool isReachable

    readonly property bool isTabStop: isReachable && ListView.isCurrentItem
    // The frame of the menu button; it can be clicked further out.
    readonly property real menuWidth: 18 * Math.max(1, appearance.textScale)

    signal menuRequested(byKeyboard: bool)
    signal deleted

    leftPadding: Metrics.cardPadding + 10
    rightPadding: Metrics.cardPadding + 10
    topPadding: 8
    bottomPadding: 8
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    objectName: "kanbanCard"
    focusPolicy: isTabStop || activeFocus ? Qt.TabFocus : Qt.NoFocus

    Accessible.role: Accessible.ListItem
    Accessible.name: title

    // A card in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index

    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Menu)
            menuRequested(true)
        else if (event.key === Qt.Key_Delete)
            deleted()
        else
            event.accepted = false
    }

    contentItem: Item {
        implicitHeight: titleText.implicitHeight

        CardText {
            id: titleText

            width: parent.width - root.menuWidth - 4
            height: parent.height
            appearance: root.appearance
            size: Metrics.calloutSize
            wrapMode: Text.Wrap
            maximumLineCount: 4
            text: root.title
        }

        PlainButton {
            id: menuButton

            objectName: "cardMenuButton"
            x: parent.width - (root.menuWidth + width) / 2
            width: root.menuWidth + 2 * 6
            height: Math.max(24, implicitHeight)
            anchors.verticalCenter: parent.verticalCenter
            text: "Aktionen: " + root.title
            showsText: false
            symbol: "ellipsis"
            symbolSize: 13 * root.appearance.textScale
            color: root.appearance.secondary
            accent: root.appearance.accent
            focusPolicy: root.isTabStop || activeFocus ? Qt.TabFocus : Qt.NoFocus
            Accessible.role: Accessible.ButtonMenu
            onClicked: root.menuRequested(visualFocus)
        }
    }

    background: Item {
        TapHandler {
            onTapped: root.forceActiveFocus(Qt.MouseFocusReason)
        }

        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding
            anchors.rightMargin: Metrics.cardPadding
            radius: 9
            color: Qt.rgba(1, 1, 1, 0.1)

            FocusRing {
                radius: 11
                visible: root.visualFocus
                accent: root.appearance.accent
            }
        }
    }
}
