import QtQuick

import Randblatt.Controls

// The quick form for a new event. Its values stay in the view, so that they outlast the form.
Column {
    id: root

    required property CardAppearance appearance
    required property date startDate
    required property int durationMinutes
    required property var durations
    required property bool saving

    property alias newTitle: titleField.text

    readonly property Item titleInput: titleField

    signal startEdited(start: date)
    signal durationEdited(minutes: int)
    signal submitted

    spacing: 8

    FieldFrame {
        width: parent.width
        height: Math.max(30, titleField.implicitHeight + 2 * 7)
        appearance: root.appearance
        active: titleField.activeFocus

        PlainTextField {
            id: titleField

            objectName: "titleField"
            x: 8
            width: parent.width - 2 * x
            height: parent.height
            appearance: root.appearance
            activeFocusOnTab: true
            placeholderText: "Titel"
            onAccepted: root.submitted()
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
            value: root.startDate
            onEdited: start => root.startEdited(start)
        }
    }

    Item {
        width: parent.width
        height: picker.height

        CardText {
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            color: root.appearance.secondary
            text: "Dauer"
        }

        DurationPicker {
            id: picker

            objectName: "durationPicker"
            anchors.right: parent.right
            width: startField.width
            appearance: root.appearance
            label: "Dauer"
            durations: root.durations
            minutes: root.durationMinutes
            onChosen: minutes => root.durationEdited(minutes)
        }
    }

    ProminentButton {
        objectName: "addButton"
        anchors.right: parent.right
        accent: root.appearance.accent
        textSize: Metrics.bodySize * root.appearance.textScale
        text: "Hinzufügen"
        enabled: !root.saving
        onClicked: root.submitted()
    }
}
