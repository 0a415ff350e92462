import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Forms

// The tabs of the settings window, each with its symbol over its label. The keyboard reaches the current tab
// and moves on with the arrow keys.
Item {
    id: root

    // Objects with the members label and symbol.
    required property var tabs
    property int currentIndex: 0

    function step(index: int): void {
        currentIndex = (index + tabs.length) % tabs.length
        buttons.itemAt(currentIndex).forceActiveFocus(Qt.TabFocusReason)
    }

    implicitHeight: 50 + FormStyle.sized(22)
    Accessible.role: Accessible.PageTabList
    Accessible.name: "Bereiche"

    Row {
        anchors.centerIn: parent
        spacing: 4

        Repeater {
            id: buttons

            model: root.tabs

            T.TabButton {
                id: tab

                required property var modelData
                required property int index
                readonly property bool current: root.currentIndex === index
                readonly property color tone: current ? FormStyle.text : FormStyle.secondary

                objectName: "tab-" + modelData.label
                width: FormStyle.sized(96)
                height: 32 + FormStyle.sized(22)
                text: modelData.label
                focusPolicy: current || activeFocus ? Qt.TabFocus : Qt.NoFocus
                checked: current
                Accessible.name: text
                Accessible.selected: current
                Accessible.onPressAction: tab.clicked()
                Keys.onLeftPressed: root.step(index - 1)
                Keys.onRightPressed: root.step(index + 1)
                onClicked: root.currentIndex = index

                contentItem: Item {
                    Symbol {
                        y: 8
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: tab.modelData.symbol
                        size: 20
                        color: tab.current ? FormStyle.accent : FormStyle.secondary
                    }

                    Text {
                        y: 32
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: tab.text
                        color: tab.tone
                        font.pixelSize: FormStyle.captionSize
                        font.weight: tab.current ? Font.DemiBold : Font.Normal
                        textFormat: Text.PlainText
                    }
                }

                background: Rectangle {
                    radius: 9
                    color: FormStyle.alpha(tab.current ? 0.09 : tab.hovered ? 0.05 : 0)

                    FormFocusRing {
                        visible: tab.visualFocus
                        anchors.margins: 0
                    }
                }
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: FormStyle.outline
    }
}
