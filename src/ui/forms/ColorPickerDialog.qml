import QtQuick.Dialogs

// The toolkit's colour dialog, without opacity.
ColorDialog {
    title: "Farbe wählen"
}
