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
    // The range, under the names that assistive tools are told it by.
    readonly property real minimumValue: from
    readonly property real maximumValue: to
    // As many steps as a tenth of the range has.
    readonly property real page: Math.max(stepSize, Math.round((to - from) / 10 / stepSize) * stepSize)
    property bool isComplete: false

    signal edited(real number)

    function move(target: real): void {
        root.edited(Numbers.snapped(target, from, to, stepSize))
    }

    implicitWidth: 160
    implicitHeight: 22
    value: Numbers.limited(number, from, to)
    snapMode: T.Slider.SnapAlways
    focusPolicy: Qt.TabFocus
    Accessible.name: name
    Accessible.onIncreaseAction: root.move(value + stepSize)
    Accessible.onDecreaseAction: root.move(value - stepSize)
    Keys.onPressed: event => {
        const targets = {
            [Qt.Key_Home]: from,
            [Qt.Key_End]: to,
            [Qt.Key_Up]: value + stepSize,
            [Qt.Key_Down]: value - stepSize,
            [Qt.Key_PageUp]: value + page,
            [Qt.Key_PageDown]: value - page
        }
        event.accepted = event.key in targets && !(event.modifiers & ~Qt.KeypadModifier)
        if (event.accepted)
            root.move(targets[event.key])
    }
    // Whoever moves it, a hand, a key or an assistive tool that sets a value: what is not the number is new.
    onValueChanged: {
        if (isComplete && Math.abs(value - Numbers.limited(number, from, to)) > stepSize / 1000)
            root.move(value)
    }
    Component.onCompleted: isComplete = true

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
