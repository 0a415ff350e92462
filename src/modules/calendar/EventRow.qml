import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// One event: a bar in its calendar's colour, its title, and when it takes place.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    required property int index
    required property string title
    required property string timeLine
    required property color color
    required property string calendarName
    required property string eventId

    // Whether the keyboard comes to this row of all when it comes to the list.
    required property bool isCurrent

    signal chosen
    signal focused

    objectName: "eventRow"
    implicitHeight: column.height + 2 * 4
    focusPolicy: isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus
    text: title + ", " + timeLine
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.description: calendarName
    Accessible.onPressAction: chosen()
    onClicked: chosen()
    Keys.onReturnPressed: chosen()
    Keys.onEnterPressed: chosen()

    // A row in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true
    onActiveFocusChanged: if (activeFocus)
        focused()

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding - 6
            anchors.rightMargin: Metrics.cardPadding - 6
            radius: Metrics.rowRadius
            color: root.appearance.alpha(root.hovered || root.visualFocus ? 0.08 : 0)

            FocusRing {
                visible: root.visualFocus
                anchors.margins: 0
                accent: root.appearance.accent
            }
        }

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }

    contentItem: Item {
        Rectangle {
            id: bar

            objectName: "colorBar"
            x: Metrics.cardPadding
            y: 4
            width: 4
            height: column.height
            radius: 2
            color: root.color
        }

        Column {
            id: column

            anchors.left: bar.right
            anchors.leftMargin: 9
            anchors.right: parent.right
            anchors.rightMargin: Metrics.cardPadding
            y: 4
            spacing: 1

            CardText {
                objectName: "eventTitle"
                width: parent.width
                appearance: root.appearance
                text: root.title.replace(/\s+/g, " ")
                Accessible.ignored: true
            }

            CardText {
                objectName: "eventTime"
                width: parent.width
                appearance: root.appearance
                size: Metrics.captionSize
                color: root.appearance.secondary
                text: root.timeLine
                Accessible.ignored: true
            }
        }
    }
}
