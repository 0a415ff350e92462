import QtQuick
import QtQuick.Templates as T

// One choice out of a few, each with a line of its own and, where it has one, a description. The keyboard
// reaches the chosen one and moves on with the arrow keys.
Column {
    id: root

    property string name
    // Objects with the members value, label and, if wanted, description.
    property var options: []
    property string value

    signal edited(string value)

    function step(index: int): void {
        const next = Math.max(0, Math.min(index, options.length - 1))
        buttons.itemAt(next).forceActiveFocus(Qt.TabFocusReason)
        root.edited(options[next].value)
    }

    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Repeater {
        id: buttons

        model: root.options

        T.RadioButton {
            id: button

            required property var modelData
            required property int index
            readonly property bool chosen: root.value === modelData.value

            objectName: root.objectName + "-" + modelData.value
            width: root.width
            implicitHeight: texts.implicitHeight
            text: modelData.label
            focusPolicy: chosen || activeFocus ? Qt.TabFocus : Qt.NoFocus
            checked: chosen
            Accessible.name: text
            Accessible.description: modelData.description ?? ""
            Accessible.onPressAction: button.clicked()
            Accessible.onToggleAction: button.clicked()
            Keys.onUpPressed: event => event.modifiers ? event.accepted = false : root.step(index - 1)
            Keys.onDownPressed: event => event.modifiers ? event.accepted = false : root.step(index + 1)
            onClicked: root.edited(modelData.value)

            contentItem: Item {
                Rectangle {
                    id: ring

                    y: 1
                    width: 16
                    height: 16
                    radius: 8
                    color: button.chosen ? FormStyle.accent : FormStyle.face
                    border.width: button.chosen ? 0 : 1
                    border.color: FormStyle.highContrast ? FormStyle.rim : FormStyle.alpha(button.hovered ? 0.5 : 0.34)

                    Rectangle {
                        visible: button.chosen
                        anchors.centerIn: parent
                        width: 6
                        height: 6
                        radius: 3
                        color: FormStyle.accentText
                    }

                    FormFocusRing {
                        visible: button.visualFocus
                        radius: height / 2
                    }
                }

                Column {
                    id: texts

                    x: ring.width + 8
                    width: parent.width - x
                    spacing: 2

                    FormText {
                        width: parent.width
                        text: button.text
                        Accessible.ignored: true
                    }

                    FormText {
                        visible: text !== ""
                        width: parent.width
                        text: button.modelData.description ?? ""
                        color: FormStyle.secondary
                        font.pixelSize: FormStyle.captionSize
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
