import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// The length of an event, chosen from a list.
T.ComboBox {
    id: root

    required property CardAppearance appearance
    required property string label
    required property var durations
    required property int minutes

    signal chosen(minutes: int)

    implicitWidth: 110 * appearance.textScale
    implicitHeight: Math.max(28, contentItem.implicitHeight + 2 * 6)
    focusPolicy: Qt.TabFocus
    model: durations
    currentIndex: durations.indexOf(minutes)
    displayText: CalendarFormat.durationLabel(minutes)
    onActivated: index => root.chosen(durations[index])

    Accessible.role: Accessible.ComboBox
    Accessible.name: label + ": " + displayText
    Accessible.onPressAction: popup.visible ? popup.close() : popup.open()

    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()

    contentItem: CardText {
        appearance: root.appearance
        leftPadding: 8
        text: root.displayText
        Accessible.ignored: true
    }

    indicator: Symbol {
        x: root.width - width - 8
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.down"
        size: 11 * root.appearance.textScale
        color: root.appearance.secondary
    }

    background: FieldFrame {
        appearance: root.appearance
        active: root.visualFocus || root.popup.visible

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }

    delegate: T.ItemDelegate {
        id: entry

        required property int modelData
        required property int index

        objectName: "duration-" + modelData
        width: ListView.view.width
        implicitHeight: entryText.implicitHeight + 2 * 6
        highlighted: root.highlightedIndex === index
        text: CalendarFormat.durationLabel(modelData)

        contentItem: Text {
            id: entryText

            leftPadding: 8
            text: entry.text
            color: "white"
            font.pixelSize: Metrics.bodySize * root.appearance.textScale
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.PlainText
        }

        background: Rectangle {
            radius: Metrics.rowRadius
            color: Qt.rgba(1, 1, 1, entry.highlighted ? 0.16 : 0)
        }

        Symbol {
            x: parent.width - width - 8
            anchors.verticalCenter: parent.verticalCenter
            visible: entry.modelData === root.minutes
            name: "checkmark"
            size: 11
        }
    }

    popup: T.Popup {
        objectName: "durationPopup"
        y: root.height + 4
        width: root.width
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 5
        margins: 8

        contentItem: ListView {
            implicitHeight: contentHeight
            model: root.delegateModel
            currentIndex: root.highlightedIndex
            boundsBehavior: Flickable.StopAtBounds
            clip: true
        }

        background: Rectangle {
            radius: 10
            color: Qt.rgba(0.12, 0.12, 0.2, 1)
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, 0.18)
        }
    }
}
