import QtQuick
import QtQuick.Templates as T

// A menu over a card, white on dark.
T.Menu {
    id: root

    required property real textScale

    width: 150 * Math.max(1, textScale)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 8
    focus: true

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: false
    }

    background: Rectangle {
        radius: 10
        color: Qt.rgba(0.12, 0.12, 0.2, 0.97)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)
    }
}
