import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// A month to choose a day from, by mouse or with the arrow keys. White on dark, as all that lies over a card.
T.Popup {
    id: root

    required property real textScale

    // The day that the keyboard is on; its month is shown.
    property date day: new Date()

    readonly property int cell: Math.round(30 * textScale)

    // A day was chosen; months count from 0.
    signal chosen(year: int, month: int, day: int)

    function openAt(start: date): void {
        day = new Date(start.getFullYear(), start.getMonth(), start.getDate())
        grid.chosenDay = day
        open()
        grid.forceActiveFocus(Qt.PopupFocusReason)
    }

    function moveDays(days: int): void {
        day = new Date(day.getFullYear(), day.getMonth(), day.getDate() + days)
    }

    // The same day of another month, or that month's last.
    function moveMonths(months: int): void {
        const length = new Date(day.getFullYear(), day.getMonth() + months + 1, 0).getDate()
        day = new Date(day.getFullYear(), day.getMonth() + months, Math.min(day.getDate(), length))
    }

    function choose(date: date): void {
        chosen(date.getFullYear(), date.getMonth(), date.getDate())
        close()
    }

    objectName: "monthPopup"
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 10
    margins: 8
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    background: Rectangle {
        radius: 12
        color: Qt.rgba(0.12, 0.12, 0.2, 1)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }

    // Weeks begin on Monday. Not written as a property: qmllint does not know the type.
    Binding {
        target: grid
        property: "locale"
        value: Qt.locale("de_DE")
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
                text: CalendarFormat.monthTitle(grid.month, grid.year)
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
                onClicked: root.moveMonths(-1)
            }

            PlainButton {
                id: forward

                objectName: "nextMonth"
                anchors.right: parent.right
                symbol: "chevron.right"
                symbolSize: 13 * root.textScale
                text: "Nächster Monat"
                onClicked: root.moveMonths(1)
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

            property date chosenDay

            objectName: "monthGrid"
            month: root.day.getMonth()
            year: root.day.getFullYear()
            implicitWidth: contentItem.implicitWidth
            implicitHeight: contentItem.implicitHeight
            focusPolicy: Qt.TabFocus
            focus: true
            Accessible.role: Accessible.Table
            Accessible.name: CalendarFormat.longDate(root.day.getFullYear(), root.day.getMonth(), root.day.getDate())

            Keys.onLeftPressed: root.moveDays(-1)
            Keys.onRightPressed: root.moveDays(1)
            Keys.onUpPressed: root.moveDays(-7)
            Keys.onDownPressed: root.moveDays(7)
            Keys.onReturnPressed: root.choose(root.day)
            Keys.onEnterPressed: root.choose(root.day)
            Keys.onSpacePressed: root.choose(root.day)
            Keys.onPressed: event => {
                if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                    root.moveMonths(event.key === Qt.Key_PageUp ? -1 : 1)
                    event.accepted = true
                }
            }

            delegate: MonthDay {
                width: root.cell
                height: root.cell
                textScale: root.textScale
                shownMonth: grid.month
                chosenDay: grid.chosenDay
                currentDay: root.day
                keyboard: grid.activeFocus
                onClicked: root.choose(ownDay)
            }

            contentItem: Grid {
                rows: 6
                columns: 7

                Repeater {
                    model: grid.source
                    delegate: grid.delegate
                }
            }
        }
    }
}
