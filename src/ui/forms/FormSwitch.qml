import QtQuick

import Randblatt.Controls

// The drawing of a switch.
Rectangle {
    id: root

    property bool on: false
    property bool focusShown: false

    width: 38
    height: 22
    radius: height / 2
    color: on ? FormStyle.accent : FormStyle.track
    border.width: 1
    border.color: on ? Qt.rgba(0, 0, 0, 0.12) : FormStyle.alpha(0.14)

    Behavior on color {
        ColorAnimation {
            duration: Metrics.quickDuration
        }
    }

    Rectangle {
        x: root.on ? root.width - width - 2 : 2
        y: 2
        width: 18
        height: 18
        radius: 9
        color: FormStyle.knob
        border.width: 1
        border.color: FormStyle.knobOutline

        Behavior on x {
            NumberAnimation {
                duration: Metrics.quickDuration
                easing.type: Easing.OutCubic
            }
        }
    }

    FormFocusRing {
        visible: root.focusShown
        radius: height / 2
    }
}
