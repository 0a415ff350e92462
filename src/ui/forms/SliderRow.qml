import QtQuick

import Randblatt.Forms

// A labelled slider.
FormRow {
    id: root

    required property real from
    required property real to
    required property real stepSize
    required property real number
    // The number as the slider shows it.
    readonly property real shownNumber: Numbers.limited(number, from, to)

    signal edited(real number)

    FormSlider {
        objectName: root.objectName + "Slider"
        width: parent.width
        from: root.from
        to: root.to
        stepSize: root.stepSize
        number: root.number
        name: root.text
        onEdited: number => root.edited(number)
    }
}
