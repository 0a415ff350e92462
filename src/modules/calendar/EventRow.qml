import QtQuick

import Randblatt.Controls

// One event: a bar in its calendar's colour, its title, and when it takes place.
Item {
    id: root

    required property CardAppearance appearance
    required property string title
    required property string timeLine
    required property color color
    required property string calendarName

    objectName: "eventRow"
    implicitHeight: column.height + 2 * 4
    Accessible.role: Accessible.ListItem
    Accessible.name: title + ", " + timeLine
    Accessible.description: calendarName

    // A row in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

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
