import QtQuick

import Randblatt.Calendar
import Randblatt.Controls

// The quick form for a new event. What is typed goes to the draft at once.
Column {
    id: root

    required property CardAppearance appearance
    required property EventDraft draft
    required property var durations
    // The calendars to add to: objects with `id` and `name`.
    required property var calendars
    required property bool saving

    readonly property Item titleInput: titleField

    signal submitted

    spacing: 8

    FieldFrame {
        width: parent.width
        height: Math.max(30, titleField.implicitHeight + 2 * 7)
        appearance: root.appearance
        active: titleField.activeFocus

        PlainTextField {
            id: titleField

            function follow(): void {
                if (text !== root.draft.title)
                    text = root.draft.title
            }

            objectName: "titleField"
            x: 8
            width: parent.width - 2 * x
            height: parent.height
            appearance: root.appearance
            activeFocusOnTab: true
            placeholderText: "Titel"
            onTextEdited: root.draft.title = text
            onAccepted: root.submitted()
            Component.onCompleted: follow()
        }
    }

    Connections {
        target: root.draft

        function onTitleChanged(): void {
            titleField.follow()
        }
    }

    Item {
        width: parent.width
        height: startField.height

        CardText {
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            color: root.appearance.secondary
            text: "Beginn"
        }

        DateTimeField {
            id: startField

            objectName: "startField"
            anchors.right: parent.right
            appearance: root.appearance
            label: "Beginn"
            typed: root.draft.startText
            value: root.draft.start
            problem: root.draft.startProblem
            onEdited: text => root.draft.startText = text
            onCommitted: root.draft.commitStart()
            onStepped: (cursor, steps) => root.draft.stepStart(cursor, steps)
            onDayChosen: (year, month, day) => root.draft.chooseDay(year, month, day)
        }
    }

    CardText {
        objectName: "startProblem"
        visible: root.draft.startProblem !== ""
        width: parent.width
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.destructive
        horizontalAlignment: Text.AlignRight
        wrapMode: Text.WordWrap
        text: root.draft.startProblem
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Item {
        width: parent.width
        height: picker.height

        CardText {
            id: durationLabel

            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            color: root.appearance.secondary
            text: "Dauer"
        }

        DayCheckBox {
            objectName: "allDayBox"
            anchors.left: durationLabel.right
            anchors.leftMargin: 2 * Metrics.wideGap
            anchors.right: root.draft.allDay ? parent.right : picker.left
            anchors.rightMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            text: "Ganztägig"
            checked: root.draft.allDay
            onToggled: root.draft.allDay = checked
        }

        ChoicePicker {
            id: picker

            objectName: "durationPicker"
            visible: !root.draft.allDay
            anchors.right: parent.right
            width: startField.width
            appearance: root.appearance
            label: "Dauer"
            entryName: "duration"
            entries: root.durations.map(minutes => CalendarFormat.durationLabel(minutes))
            current: root.durations.indexOf(root.draft.durationMinutes)
            displayText: CalendarFormat.durationLabel(root.draft.durationMinutes)
            onChosen: index => root.draft.durationMinutes = root.durations[index]
        }
    }

    CardText {
        objectName: "addProblem"
        visible: text !== ""
        width: parent.width
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.destructive
        wrapMode: Text.WordWrap
        text: root.draft.problem
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    Item {
        width: parent.width
        height: addButton.height

        ChoicePicker {
            objectName: "calendarPicker"
            visible: root.calendars.length > 1
            anchors.left: parent.left
            anchors.right: addButton.left
            anchors.rightMargin: Metrics.gap
            height: parent.height
            appearance: root.appearance
            label: "Kalender"
            showsLabel: true
            entryName: "calendar"
            entries: root.calendars.map(calendar => calendar.name)
            current: root.calendars.findIndex(calendar => calendar.id === root.draft.calendar)
            onChosen: index => root.draft.calendar = root.calendars[index].id
        }

        ProminentButton {
            id: addButton

            objectName: "addButton"
            anchors.right: parent.right
            accent: root.appearance.accent
            textSize: Metrics.bodySize * root.appearance.textScale
            text: "Hinzufügen"
            enabled: !root.saving
            onClicked: root.submitted()
        }
    }
}
