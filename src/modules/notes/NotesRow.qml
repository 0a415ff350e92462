import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// A line of a list: a symbol, a name and, at the end, another symbol.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    property string symbol
    property string trailingSymbol
    property bool isUnsaved: false
    // What it names is what the list beside it shows.
    property bool isChosen: false

    leftPadding: Metrics.cardPadding
    rightPadding: Metrics.cardPadding
    topPadding: 6
    bottomPadding: 6
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    Accessible.name: text
    Accessible.description: isUnsaved ? "Nicht gespeichert" : ""
    Accessible.selected: isChosen
    Accessible.onPressAction: root.clicked()

    // A row in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    contentItem: Item {
        implicitHeight: Math.max(start.height, name.implicitHeight)

        Symbol {
            id: start

            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            size: Math.round(14 * root.appearance.textScale)
            color: root.appearance.secondary
        }

        CardText {
            id: name

            objectName: "rowName"
            anchors.left: start.right
            anchors.leftMargin: 8
            anchors.right: mark.visible ? mark.left : end.left
            anchors.rightMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter
            appearance: root.appearance
            text: root.text
            Accessible.ignored: true
        }

        CardText {
            id: mark

            objectName: "unsavedMark"
            anchors.right: end.left
            anchors.rightMargin: Metrics.tightGap
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isUnsaved
            appearance: root.appearance
            size: Metrics.captionSize
            color: root.appearance.secondary
            text: "nicht gespeichert"
            Accessible.ignored: true
        }

        Symbol {
            id: end

            objectName: "rowMark"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.trailingSymbol !== ""
            name: root.trailingSymbol
            size: Math.round(11 * root.appearance.textScale)
            color: root.appearance.secondary
        }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding - 6
            anchors.rightMargin: Metrics.cardPadding - 6
            radius: Metrics.rowRadius
            color: root.appearance.alpha(root.down ? 0.12 : root.hovered || root.activeFocus ? 0.07 : 0)

            FocusRing {
                visible: root.visualFocus
                anchors.margins: 0
                radius: Metrics.rowRadius
                accent: root.appearance.accent
            }
        }

        // Not on the button itself: with a handler it would take the right mouse button as well.
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
