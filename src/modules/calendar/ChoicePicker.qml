import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// One of a few things, chosen from a list.
T.ComboBox {
    id: root

    required property CardAppearance appearance
    required property string label
    // The texts to choose from.
    required property var entries
    required property int current
    // Whether the label stands before the choice.
    property bool showsLabel: false
    // What the rows' names for tests begin with.
    property string entryName: "entry"

    signal chosen(index: int)

    implicitWidth: 110 * appearance.textScale
    implicitHeight: Math.max(28, contentItem.implicitHeight + 2 * 6)
    focusPolicy: Qt.TabFocus
    model: entries
    currentIndex: current
    displayText: entries[current] ?? ""
    onActivated: index => root.chosen(index)

    Accessible.role: Accessible.ComboBox
    Accessible.name: label + ": " + displayText
    Accessible.onPressAction: popup.visible ? popup.close() : popup.open()

    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()

    contentItem: CardText {
        appearance: root.appearance
        leftPadding: 8
        rightPadding: 26
        text: root.showsLabel ? root.label + ": " + root.displayText : root.displayText
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
        id: row

        required property int index
        required property string modelData

        objectName: root.entryName + "-" + index
        width: ListView.view.width
        implicitHeight: entryText.implicitHeight + 2 * 6
        highlighted: root.highlightedIndex === index
        text: modelData
        Accessible.name: text

        contentItem: Text {
            id: entryText

            leftPadding: 8
            rightPadding: 26
            elide: Text.ElideRight
            text: row.text
            color: "white"
            font.pixelSize: Metrics.bodySize * root.appearance.textScale
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.PlainText
        }

        background: Rectangle {
            radius: Metrics.rowRadius
            color: Qt.rgba(1, 1, 1, row.highlighted ? 0.16 : 0)
        }

        Symbol {
            x: parent.width - width - 8
            anchors.verticalCenter: parent.verticalCenter
            visible: row.index === root.current
            name: "checkmark"
            size: 11
        }
    }

    popup: T.Popup {
        objectName: root.entryName + "Popup"
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
