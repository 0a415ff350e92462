import QtQuick
import QtQuick.Templates as T

// A check box that is drawn as one of two symbols. Its name for assistive tools is `text`. It shows what `on`
// says; pressed, it asks for the other state.
T.CheckBox {
    id: root

    required property bool on
    required property string symbolOn
    required property string symbolOff
    property real symbolSize: 15
    property color color: "white"
    property color accent: "#c4b8ff"
    // The clickable area reaches this far around the drawing.
    property real reach: 5

    implicitWidth: symbolSize + 2 * reach
    implicitHeight: symbolSize + 2 * reach
    focusPolicy: Qt.TabFocus
    opacity: !enabled ? 0.4 : down ? 0.6 : 1
    checked: on

    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    // The template changes by itself.
    onClicked: checked = Qt.binding(() => root.on)

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.on ? root.symbolOn : root.symbolOff
            size: root.symbolSize
            color: root.color
        }
    }

    background: PlainGround {
        control: root
        color: root.color
        accent: root.accent
    }
}
