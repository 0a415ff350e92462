import QtQuick
import QtQuick.Templates as T

// A button without a frame: a symbol, a text, or both. Its name for assistive tools is `text`, also where only
// the symbol is drawn.
T.AbstractButton {
    id: root

    property string symbol
    property real symbolSize: 15
    property color color: "white"
    property color accent: "#c4b8ff"
    property bool showsText: symbol === ""
    property real textSize: Metrics.sized(Metrics.bodySize)
    // The clickable area reaches this far around the drawing.
    property real reach: 5

    implicitWidth: contentItem.implicitWidth + 2 * reach
    implicitHeight: contentItem.implicitHeight + 2 * reach
    padding: reach
    focusPolicy: Qt.TabFocus
    opacity: !enabled ? 0.4 : down ? 0.6 : 1

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: 8

            Symbol {
                visible: root.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                name: root.symbol
                size: root.symbolSize
                color: root.color
            }

            Text {
                visible: root.showsText
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                color: root.color
                font.pixelSize: root.textSize
                font.weight: root.font.weight
                textFormat: Text.PlainText
            }
        }
    }

    background: PlainGround {
        control: root
        color: root.color
        accent: root.accent
    }
}
