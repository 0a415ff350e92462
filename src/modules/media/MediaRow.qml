import QtQuick
import QtQuick.Templates as T
import Randblatt.Controls

// A row of a list: a picture or symbol, a title above a subtitle, and what stands at the end.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    required property string title
    required property string subtitle
    property real titleSize: Metrics.calloutSize
    property int titleWeight: Font.Medium
    // Faint on its own, or only seen under the pointer.
    property bool isFramed: true
    property Component leading
    property Component trailing

    leftPadding: Metrics.cardPadding + 10
    rightPadding: Metrics.cardPadding + 10
    topPadding: isFramed ? 5 : 4
    bottomPadding: topPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    Accessible.name: subtitle === "" ? title : title + ", " + subtitle
    Accessible.onPressAction: root.clicked()

    // A row in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    contentItem: Item {
        implicitHeight: Math.max(start.height, titles.height, end.height)

        Loader {
            id: start

            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: root.leading
        }

        Column {
            id: titles

            anchors.left: start.right
            anchors.leftMargin: Metrics.gap
            anchors.right: end.left
            anchors.rightMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter

            CardText {
                objectName: "rowTitle"
                width: parent.width
                appearance: root.appearance
                text: root.title
                size: root.titleSize
                font.weight: root.titleWeight
                Accessible.ignored: true
            }

            CardText {
                objectName: "rowSubtitle"
                width: parent.width
                visible: text !== ""
                appearance: root.appearance
                text: root.subtitle
                size: Metrics.captionSize
                color: root.appearance.secondary
                Accessible.ignored: true
            }
        }

        Loader {
            id: end

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: root.trailing
        }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding
            anchors.rightMargin: Metrics.cardPadding
            radius: 9
            color: root.appearance.alpha((root.isFramed ? 0.05 : 0) + (root.down ? 0.1 : root.hovered || root.activeFocus ? 0.05 : 0))

            FocusRing {
                visible: root.visualFocus
                anchors.margins: 0
                radius: 9
                accent: root.appearance.accent
            }
        }

        // Not on the button itself: with a handler it would take the right mouse button as well.
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
