import QtQuick
import QtQuick.Templates as T

// A colour, and by a click a window to choose another one in, which is told while one chooses.
T.AbstractButton {
    id: root

    required property color color

    signal edited(color color)
    // The choosing begins, and ends without a choice: what was told meanwhile is to be taken back.
    signal opened
    signal cancelled

    function open(): void {
        root.opened()
        chooser.active = true
        const window = chooser.item as ColorWindow
        window.transientParent = root.Window.window
        window.title = root.text
        window.present(root.color)
    }

    implicitWidth: 56
    implicitHeight: FormStyle.sized(28)
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
        border.color: root.hovered ? FormStyle.alpha(0.5) : FormStyle.rim

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

    Loader {
        id: chooser

        active: false
        sourceComponent: ColorWindow {
            onEdited: color => root.edited(color)
            onCancelled: root.cancelled()
        }
    }
}
