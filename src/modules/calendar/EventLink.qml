import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A page of the web that an event names, to be opened in the browser.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    required property string modelData
    required property bool isMeeting

    // The whole address is told to who asks; a line has room for its beginning.
    readonly property string shownAddress: modelData.replace(/^https?:\/\//, "").replace(/\/$/, "")

    objectName: "eventLink"
    implicitHeight: Math.max(24, label.implicitHeight + 2 * 4)
    focusPolicy: Qt.TabFocus
    text: isMeeting ? "Teilnehmen: " + shownAddress : shownAddress
    Accessible.role: Accessible.Link
    Accessible.name: isMeeting ? "Teilnehmen: " + modelData : modelData
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onClicked: Qt.openUrlExternally(modelData)

    contentItem: CardText {
        id: label

        appearance: root.appearance
        color: root.isMeeting ? "white" : "#b3a1ff"
        font.weight: root.isMeeting ? Font.DemiBold : Font.Normal
        font.underline: !root.isMeeting && root.hovered
        leftPadding: root.isMeeting ? 10 : 0
        rightPadding: leftPadding
        text: root.text
    }

    background: Rectangle {
        radius: Metrics.rowRadius
        color: !root.isMeeting ? "transparent" : root.hovered ? Qt.lighter("#6a50e6", 1.08) : "#6a50e6"

        FocusRing {
            visible: root.visualFocus
            accent: "#b3a1ff"
        }

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
