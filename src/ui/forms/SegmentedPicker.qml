import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// One choice out of a few, side by side. The keyboard reaches the chosen one and moves on with the arrow keys.
Rectangle {
    id: root

    property string name
    // Objects with the members value and label.
    property var options: []
    property string value
    readonly property int count: options.length
    readonly property real segmentWidth: (width - 2 * inset) / Math.max(1, count)
    readonly property int chosenIndex: options.findIndex(option => option.value === value)
    readonly property int inset: 2

    signal edited(string value)

    function step(index: int): void {
        const next = Math.max(0, Math.min(index, count - 1))
        segments.itemAt(next).forceActiveFocus(Qt.TabFocusReason)
        root.edited(options[next].value)
    }

    implicitWidth: 220
    implicitHeight: FormStyle.sized(30)
    radius: 8
    color: FormStyle.trough
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Rectangle {
        visible: root.chosenIndex >= 0
        x: root.inset + root.chosenIndex * root.segmentWidth
        y: root.inset
        width: root.segmentWidth
        height: root.height - 2 * root.inset
        radius: 6
        color: FormStyle.segment
        border.width: 1
        border.color: Qt.rgba(0, 0, 0, FormStyle.dark ? 0.2 : 0.12)

        Behavior on x {
            NumberAnimation {
                duration: Metrics.quickDuration
                easing.type: Easing.OutCubic
            }
        }
    }

    Row {
        x: root.inset
        height: root.height

        Repeater {
            id: segments

            model: root.options

            T.RadioButton {
                id: segment

                required property var modelData
                required property int index
                readonly property bool chosen: root.value === modelData.value

                objectName: root.objectName + "-" + modelData.value
                width: root.segmentWidth
                height: root.height
                text: modelData.label
                // Where the value is none of the options, the first one lets the keyboard in.
                focusPolicy: chosen || activeFocus || (root.chosenIndex < 0 && index === 0) ? Qt.TabFocus : Qt.NoFocus
                checked: chosen
                Accessible.name: text
                Accessible.onPressAction: segment.clicked()
                Accessible.onToggleAction: segment.clicked()
                Keys.onLeftPressed: root.step(index - 1)
                Keys.onRightPressed: root.step(index + 1)
                onClicked: root.edited(modelData.value)

                contentItem: Text {
                    text: segment.text
                    color: FormStyle.text
                    opacity: segment.chosen || segment.hovered ? 1 : 0.78
                    font.pixelSize: FormStyle.bodySize
                    font.weight: segment.chosen ? Font.Medium : Font.Normal
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }

                background: FormFocusRing {
                    visible: segment.visualFocus
                    anchors.margins: 0
                    radius: 8
                }
            }
        }
    }
}
