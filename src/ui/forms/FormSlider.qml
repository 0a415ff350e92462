import QtQuick
import QtQuick.Templates as T

import Randblatt.Forms

// A slider that shows a number and reports where the user moves it. A number outside its range is shown at the
// end of the range, and stays what it is until the user moves the slider.
T.Slider {
    id: root

    required property real number
    property string name
    readonly property int knobSize: 18

    signal edited(real number)

    implicitWidth: 160
    implicitHeight: 22
    value: Numbers.limited(number, from, to)
    snapMode: T.Slider.SnapAlways
    focusPolicy: Qt.TabFocus
    Accessible.name: name
    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_Home || event.key === Qt.Key_End
        if (event.accepted)
            root.edited(event.key === Qt.Key_Home ? from : Numbers.snapped(to, from, to, stepSize))
    }
    onMoved: root.edited(Numbers.snapped(value, from, to, stepSize))

    background: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: 4
            radius: 2
            color: FormStyle.track

            Rectangle {
                width: root.knobSize / 2 + root.visualPosition * (parent.width - root.knobSize)
                height: parent.height
                radius: parent.radius
                color: FormStyle.accent
            }
        }
    }

    handle: Rectangle {
        x: root.visualPosition * (root.width - width)
        y: (root.height - height) / 2
        width: root.knobSize
        height: root.knobSize
        radius: width / 2
        color: root.pressed ? Qt.darker(FormStyle.knob, 1.06) : FormStyle.knob
        border.width: 1
        border.color: FormStyle.knobOutline

        Rectangle {
            visible: root.visualFocus || root.pressed
            anchors.fill: parent
            anchors.margins: -3
            z: -1
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: FormStyle.accent
        }
    }
}
