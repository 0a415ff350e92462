import QtQuick
import QtQuick.Templates as T

// The words that come up when the pointer rests on a control which shows only a symbol.
Loader {
    id: root

    // The control's own `hovered`.
    required property bool hovered
    required property string text

    anchors.fill: parent
    active: hovered

    sourceComponent: T.ToolTip {
        id: tip

        readonly property real centred: (root.width - width) / 2

        parent: root
        x: centred
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
        text: root.text

        contentItem: Text {
            id: words

            text: tip.text
            color: "white"
            font.pixelSize: Metrics.captionSize
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
