import QtQuick
import QtQuick.Dialogs

// The toolkit's colour dialog, without opacity.
ColorDialog {
    id: root

    objectName: "colorDialog"

    signal picked(color color)

    function show(color: color): void {
        selectedColor = color
        open()
    }

    title: "Farbe wählen"
    onAccepted: root.picked(selectedColor)
}
