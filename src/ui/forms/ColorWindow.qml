import QtQuick

import Randblatt.Forms

// A window to choose a colour in, by hue, saturation and brightness or by its number, without opacity. It tells
// of every change at once.
Window {
    id: root

    // In HSV, each 0…1; apart from the colour, so that a grey keeps its hue.
    property real hue: 0
    property real saturation: 0
    property real brightness: 0

    signal edited(color color)
    // Closed without a choice.
    signal cancelled

    component Part: SliderRow {
        from: 0
        stepSize: 1
        labelWidth: FormStyle.sized(150)
    }

    function present(color: color): void {
        take(color)
        show()
        raise()
        requestActivate()
    }

    function take(color: color): void {
        if (color.hsvHue >= 0)
            hue = color.hsvHue
        saturation = color.hsvSaturation
        brightness = color.hsvValue
        number.text = color.toString()
    }

    function change(hue: real, saturation: real, brightness: real): void {
        root.hue = hue
        root.saturation = saturation
        root.brightness = brightness
        const color = Qt.hsva(hue, saturation, brightness, 1)
        number.text = color.toString()
        edited(color)
    }

    function changeNumber(text: string): void {
        if (!/^#?[0-9a-fA-F]{6}$/.test(text))
            return
        const color = Qt.color(text.startsWith("#") ? text : "#" + text)
        if (color.hsvHue >= 0)
            hue = color.hsvHue
        saturation = color.hsvSaturation
        brightness = color.hsvValue
        edited(color)
    }

    function cancel(): void {
        cancelled()
        close()
    }

    objectName: "colorWindow"
    flags: Qt.Dialog
    modality: Qt.WindowModal
    color: FormStyle.ground
    width: FormStyle.sized(460)
    height: content.height + 2 * 20
    minimumWidth: 320
    minimumHeight: content.height + 2 * 20

    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onEscapePressed: root.cancel()
        Keys.onReturnPressed: root.close()
        Keys.onEnterPressed: root.close()

        Column {
            id: content

            x: 24
            y: 20
            width: parent.width - 2 * x
            spacing: 18

            FormSection {
                Item {
                    width: parent.width
                    height: FormStyle.sized(64)

                    Rectangle {
                        objectName: "colorSample"
                        anchors.fill: parent
                        anchors.margins: 12
                        radius: 7
                        color: Qt.hsva(root.hue, root.saturation, root.brightness, 1)
                        border.width: 1
                        border.color: FormStyle.rim
                    }
                }

                Part {
                    objectName: "hue"
                    text: "Farbton: " + Numbers.whole(shownNumber) + "°"
                    to: 359
                    number: Math.round(root.hue * 360)
                    onEdited: number => root.change(number / 360, root.saturation, root.brightness)
                }

                Part {
                    objectName: "saturation"
                    text: "Sättigung: " + Numbers.whole(shownNumber) + " %"
                    to: 100
                    number: Math.round(root.saturation * 100)
                    onEdited: number => root.change(root.hue, number / 100, root.brightness)
                }

                Part {
                    objectName: "brightness"
                    text: "Helligkeit: " + Numbers.whole(shownNumber) + " %"
                    to: 100
                    number: Math.round(root.brightness * 100)
                    onEdited: number => root.change(root.hue, root.saturation, number / 100)
                }

                FormRow {
                    text: "Farbwert"
                    labelWidth: FormStyle.sized(150)

                    FormTextField {
                        id: number

                        objectName: "colorNumber"
                        width: parent.width
                        name: "Farbwert"
                        maximumLength: 7
                        onTextEdited: root.changeNumber(text)
                    }
                }
            }

            Row {
                anchors.right: parent.right
                spacing: 10

                FormButton {
                    objectName: "cancelColor"
                    text: "Abbrechen"
                    onClicked: root.cancel()
                }

                FormButton {
                    objectName: "acceptColor"
                    text: "Fertig"
                    onClicked: root.close()
                }
            }
        }
    }
}
