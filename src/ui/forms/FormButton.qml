import QtQuick
import QtQuick.Templates as T

// A push button; a prominent one is what the window is there for.
T.AbstractButton {
    id: root

    property bool prominent: false
    property real textSize: FormStyle.bodySize

    implicitWidth: Math.max(prominent ? 160 : 88, label.implicitWidth + 2 * 16)
    implicitHeight: FormStyle.sized(prominent ? 38 : 32)
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.45
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Text {
        id: label

        text: root.text
        color: root.prominent ? FormStyle.accentText : FormStyle.text
        font.pixelSize: root.textSize
        font.weight: root.prominent ? Font.DemiBold : Font.Normal
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
    }

    background: Rectangle {
        readonly property color ground: root.prominent ? FormStyle.accent : FormStyle.face

        radius: 8
        color: root.down ? Qt.darker(ground, 1.12) : root.hovered ? FormStyle.mix(ground, FormStyle.text, 0.06) : ground
        border.width: 1
        border.color: root.prominent ? Qt.rgba(0, 0, 0, 0.15) : FormStyle.highContrast ? FormStyle.rim : FormStyle.alpha(0.18)

        FormFocusRing {
            visible: root.visualFocus
            radius: 11
        }
    }
}
