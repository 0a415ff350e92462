import QtQuick
import QtQuick.Templates as T

// The words that come up when the pointer rests on a button which shows only a symbol; to be put into it.
Loader {
    id: root

    required property T.AbstractButton control
    // Whether there is something to say that is not seen.
    property bool isWanted: true
    // Pressing the button answers what it is for.
    property bool dismissed: false

    anchors.fill: parent
    active: isWanted && control.hovered && !dismissed

    Connections {
        target: root.control

        function onPressed(): void {
            root.dismissed = true
        }

        function onHoveredChanged(): void {
            if (!root.control.hovered)
                root.dismissed = false
        }
    }

    sourceComponent: T.ToolTip {
        id: tip

        parent: root
        // Not beyond the button's right edge, which may be the card's.
        x: width < root.width ? (root.width - width) / 2 : root.width - width
        y: root.height + 3
        margins: 6
        leftPadding: 8
        rightPadding: 8
        topPadding: 4
        bottomPadding: 4
        implicitWidth: words.implicitWidth + leftPadding + rightPadding
        implicitHeight: words.implicitHeight + topPadding + bottomPadding
        closePolicy: T.Popup.NoAutoClose
        delay: 600
        visible: true
        text: root.control.text

        contentItem: Text {
            id: words

            text: tip.text
            color: "white"
            font.pixelSize: Metrics.sized(Metrics.captionSize)
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        background: Rectangle {
            radius: 6
            color: "#e61c1c22"
            border.width: 1
            border.color: Qt.rgba(1, 1, 1, 0.14)
        }
    }
}
