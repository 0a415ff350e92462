import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// All that is known of one event, over the agenda. White on dark, as all that lies over a card. Only to read.
T.Popup {
    id: root

    required property AgendaModel agenda
    required property real textScale

    property string eventId
    property var event: ({})

    readonly property var links: event.links ?? []
    readonly property CardAppearance look: CardAppearance {
        textScale: root.textScale
    }

    function openAt(id: string): void {
        eventId = id
        event = agenda.details(id)
        body.contentY = 0
        open()
        closeButton.forceActiveFocus(Qt.PopupFocusReason)
    }

    function scroll(distance: real): void {
        body.contentY = Math.max(0, Math.min(body.contentY + distance, body.contentHeight - body.height))
    }

    objectName: "eventCard"
    implicitHeight: Math.min(column.height + topPadding + bottomPadding, parent.height - 2 * y)
    x: Metrics.gap
    y: Metrics.gap
    width: parent.width - 2 * x
    padding: 14
    focus: true
    modal: true
    dim: false
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    // What has changed meanwhile is shown; what is gone has nothing to show.
    Connections {
        target: root.agenda

        function onFollowed(): void {
            if (!root.visible)
                return
            root.event = root.agenda.details(root.eventId)
            if (root.event.title === undefined)
                root.close()
        }
    }

    background: Rectangle {
        radius: 12
        color: Qt.rgba(0.12, 0.12, 0.2, 1)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }

    contentItem: Flickable {
        id: body

        objectName: "eventCardBody"
        contentHeight: column.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        Accessible.role: Accessible.Dialog
        Accessible.name: root.event.title ?? ""

        Keys.onUpPressed: root.scroll(-44)
        Keys.onDownPressed: root.scroll(44)

        T.ScrollBar.vertical: CardScrollBar {
            appearance: root.look
        }

        Column {
            id: column

            width: body.width
            spacing: Metrics.gap

            Item {
                width: parent.width
                height: Math.max(heading.height, closeButton.height)

                CardText {
                    id: heading

                    objectName: "cardTitle"
                    anchors.left: parent.left
                    anchors.right: closeButton.left
                    anchors.rightMargin: Metrics.tightGap
                    appearance: root.look
                    size: Metrics.titleSize
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    text: root.event.title ?? ""
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                PlainButton {
                    id: closeButton

                    objectName: "cardClose"
                    anchors.right: parent.right
                    anchors.rightMargin: -reach
                    symbol: "xmark"
                    symbolSize: 13 * root.textScale
                    text: "Schließen"
                    onClicked: root.close()
                }
            }

            EventCardLine {
                objectName: "cardWhen"
                appearance: root.look
                text: root.event.when ?? ""
            }

            Item {
                width: parent.width
                height: calendarName.height

                Rectangle {
                    objectName: "cardColor"
                    width: 10
                    height: 10
                    radius: 5
                    anchors.verticalCenter: parent.verticalCenter
                    color: root.event.color ?? "transparent"
                }

                EventCardLine {
                    id: calendarName

                    objectName: "cardCalendar"
                    x: 18
                    width: parent.width - x
                    appearance: root.look
                    text: root.event.calendarName ?? ""
                    Accessible.name: "Kalender: " + text
                }
            }

            EventCardLine {
                objectName: "cardPlace"
                appearance: root.look
                label: "Ort"
                text: root.event.place ?? ""
            }

            Column {
                visible: root.links.length > 0
                width: parent.width
                spacing: 2

                Repeater {
                    model: root.links

                    EventLink {
                        required property int index

                        width: parent.width
                        appearance: root.look
                        isMeeting: index < (root.event.meetings ?? 0)
                    }
                }
            }

            EventCardLine {
                objectName: "cardAttendees"
                appearance: root.look
                label: "Teilnehmende"
                text: (root.event.attendees ?? []).join("\n")
            }

            EventCardLine {
                objectName: "cardDescription"
                appearance: root.look
                label: "Beschreibung"
                text: root.event.description ?? ""
            }
        }
    }
}
