import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// One day of the month to choose from.
T.AbstractButton {
    id: root

    required property int day
    required property int month
    required property int year
    required property bool today
    required property real textScale
    // The month that is shown; the days around it are faint.
    required property int shownMonth
    // The day's number among all days.
    required property int key
    required property bool chosen
    // Whether the keyboard is on this day.
    required property bool current

    objectName: "monthDay"
    focusPolicy: Qt.NoFocus
    opacity: month === shownMonth ? 1 : 0.35
    text: day

    Accessible.role: Accessible.Button
    Accessible.name: CalendarFormat.longDate(year, month, day)
    Accessible.selected: chosen
    Accessible.onPressAction: root.clicked()

    contentItem: Text {
        text: root.text
        color: "white"
        font.pixelSize: Metrics.calloutSize * root.textScale
        font.weight: root.today ? Font.Bold : Font.Normal
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: 1
            radius: 8
            color: root.chosen ? "#6a50e6" : Qt.rgba(1, 1, 1, root.hovered ? 0.14 : 0)
            border.width: root.current ? 2 : root.today ? 1 : 0
            border.color: root.current ? "#b3a1ff" : Qt.rgba(1, 1, 1, 0.5)
        }

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
