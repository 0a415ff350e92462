import QtQuick
import QtQuick.Templates as T

// A row with a switch, which the whole row works.
T.CheckBox {
    id: root

    required property bool on
    // A symbol before the label, on a tile of this colour.
    property string symbol
    property color tint

    signal edited(bool on)

    width: parent ? parent.width : implicitWidth
    implicitHeight: Math.max(FormStyle.rowHeight, label.implicitHeight + 2 * 12)
    focusPolicy: Qt.TabFocus
    checked: on
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Accessible.onToggleAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    onClicked: {
        root.edited(!on)
        // The template changes by itself.
        checked = Qt.binding(() => root.on)
    }

    contentItem: Item {
        ModuleTile {
            id: tile

            visible: root.symbol !== ""
            x: FormStyle.rowPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            tint: root.tint
        }

        FormText {
            id: label

            anchors.left: parent.left
            anchors.leftMargin: tile.visible ? tile.x + tile.width + 12 : FormStyle.rowPadding
            anchors.right: indicator.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            Accessible.ignored: true
        }

        FormSwitch {
            id: indicator

            anchors.right: parent.right
            anchors.rightMargin: FormStyle.rowPadding
            anchors.verticalCenter: parent.verticalCenter
            on: root.on
            focusShown: root.visualFocus
        }
    }

    background: Item {
        FormHairline {
            visible: root.y > 0
        }
    }
}
