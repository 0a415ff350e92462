import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// A month to choose a day from, by mouse or with the arrow keys. White on dark, as all that lies over a card.
T.Popup {
    id: root

    required property real textScale

    readonly property int cell: Math.round(30 * textScale)

    // A day was chosen; months count from 0.
    signal chosen(year: int, month: int, day: int)

    function openAt(start: date): void {
        cursor.start(start)
        open()
        grid.forceActiveFocus(Qt.PopupFocusReason)
    }

    function choose(year: int, month: int, day: int): void {
        chosen(year, month, day)
        close()
    }

    objectName: "monthPopup"
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 10
    margins: 8
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    MonthCursor {
        id: cursor
    }

    background: Rectangle {
        radius: 12
        color: Qt.rgba(0.12, 0.12, 0.2, 1)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }

    contentItem: Column {
        spacing: 4
        Accessible.role: Accessible.Grouping
        Accessible.name: "Tag wählen"

        Item {
            width: grid.implicitWidth
            height: forward.height

            Text {
                objectName: "monthTitle"
                x: 8
                anchors.verticalCenter: parent.verticalCenter
                text: CalendarFormat.monthTitle(cursor.month, cursor.year)
                color: "white"
                font.pixelSize: Metrics.bodySize * root.textScale
                font.weight: Font.DemiBold
                textFormat: Text.PlainText
            }

            PlainButton {
                objectName: "previousMonth"
                anchors.right: forward.left
                anchors.rightMargin: 4
                symbol: "chevron.left"
                symbolSize: 13 * root.textScale
                text: "Voriger Monat"
                onClicked: cursor.moveMonths(-1)
            }

            PlainButton {
                id: forward

                objectName: "nextMonth"
                anchors.right: parent.right
                symbol: "chevron.right"
                symbolSize: 13 * root.textScale
                text: "Nächster Monat"
                onClicked: cursor.moveMonths(1)
            }
        }

        Row {
            Accessible.ignored: true

            Repeater {
                model: ["Mo", "Di", "Mi", "Do", "Fr", "Sa", "So"]

                Text {
                    required property string modelData

                    width: root.cell
                    text: modelData
                    color: Qt.rgba(1, 1, 1, 0.55)
                    font.pixelSize: Metrics.captionSize * root.textScale
                    horizontalAlignment: Text.AlignHCenter
                    textFormat: Text.PlainText
                }
            }
        }

        T.AbstractMonthGrid {
            id: grid

            objectName: "monthGrid"
            month: cursor.month
            year: cursor.year
            implicitWidth: contentItem.implicitWidth
            implicitHeight: contentItem.implicitHeight
            focusPolicy: Qt.TabFocus
            focus: true
            Accessible.role: Accessible.Table
            Accessible.name: CalendarFormat.longDate(cursor.year, cursor.month, cursor.day)

            Keys.onLeftPressed: cursor.moveDays(-1)
            Keys.onRightPressed: cursor.moveDays(1)
            Keys.onUpPressed: cursor.moveDays(-7)
            Keys.onDownPressed: cursor.moveDays(7)
            Keys.onReturnPressed: root.choose(cursor.year, cursor.month, cursor.day)
            Keys.onEnterPressed: root.choose(cursor.year, cursor.month, cursor.day)
            Keys.onSpacePressed: root.choose(cursor.year, cursor.month, cursor.day)
            Keys.onPressed: event => {
                if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                    cursor.moveMonths(event.key === Qt.Key_PageUp ? -1 : 1)
                    event.accepted = true
                }
            }

            contentItem: Grid {
                rows: 6
                columns: 7
                onParentChanged: CalendarFormat.useGerman(parent)

                Repeater {
                    model: grid.source

                    MonthDay {
                        width: root.cell
                        height: root.cell
                        textScale: root.textScale
                        shownMonth: grid.month
                        chosen: cursor.chosenKey === key
                        current: grid.activeFocus && cursor.currentKey === key
                        key: cursor.key(year, month, day)
                        onClicked: root.choose(year, month, day)
                    }
                }
            }
        }
    }
}
