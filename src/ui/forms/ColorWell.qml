import QtQuick
import QtQuick.Templates as T

// A colour, and by a click the toolkit's dialog to pick another one, without opacity.
T.AbstractButton {
    id: root

    required property color color

    signal edited(color color)

    function open(): void {
        dialog.active = true
        present(dialog.item)
    }

    function present(picker: var): void {
        picker.show(root.color)
    }

    implicitWidth: 56
    implicitHeight: 28
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: color.toString()
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    onClicked: root.open()

    background: Rectangle {
        radius: 8
        color: FormStyle.face
        border.width: 1
        border.color: FormStyle.alpha(root.hovered ? 0.36 : 0.2)

        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: 5
            color: root.color
            border.width: 1
            border.color: Qt.rgba(0, 0, 0, 0.16)
        }

        FormFocusRing {
            visible: root.visualFocus
            radius: 11
        }
    }

    // The dialog brings a whole style of controls with it: only for who wants it.
    Loader {
        id: dialog

        active: false
        source: "ColorPickerDialog.qml"

        Connections {
            target: dialog.item

            function onPicked(color: color): void {
                root.edited(color)
            }
        }
    }
}
