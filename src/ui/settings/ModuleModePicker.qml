import QtQuick

import Randblatt.Forms
import Randblatt.Settings

// The choice that a module's row adds, of the notes' mode or the media's source; nothing for other modules.
Loader {
    id: root

    required property AppSettings settings
    required property string moduleID

    component Mode: Item {
        id: mode

        property alias text: picker.name
        property alias options: picker.options
        property alias value: picker.value

        signal edited(string value)

        implicitHeight: picker.height + 18

        FormText {
            x: tileEdge
            readonly property real tileEdge: FormStyle.rowPadding + 66
            text: picker.name
            color: FormStyle.secondary
        }

        RadioPicker {
            id: picker

            objectName: "mode-" + root.moduleID
            x: FormStyle.rowPadding + FormStyle.labelWidth
            width: parent.width - x - FormStyle.rowPadding
            onEdited: value => mode.edited(value)
        }
    }

    width: parent.width
    visible: item !== null
    sourceComponent: moduleID === "notes" ? notesMode : moduleID === "spotify" ? mediaSource : null

    Component {
        id: notesMode

        Mode {
            text: "Modus"
            options: [
                {
                    value: "scratch",
                    label: "Notizzettel",
                    description: "Einfacher Notizzettel – schreib einfach rein, wird automatisch gespeichert."
                },
                {
                    value: "apple",
                    label: "Apple Notizen",
                    description: "Liest und bearbeitet deine Apple Notizen."
                }
            ]
            value: root.settings.notesMode
            onEdited: value => root.settings.notesMode = value
        }
    }

    Component {
        id: mediaSource

        Mode {
            text: "Quelle"
            options: [
                {
                    value: "spotify",
                    label: "Spotify",
                    description: "Volle Spotify-Funktion (Player + Playlists). Erfordert Spotify Premium und Anmeldung."
                },
                {
                    value: "system",
                    label: "Media Player (System)",
                    description: "Einfache Mediensteuerung (Play/Pause, vor, zurück) für die gerade spielende App – ohne Anmeldung."
                }
            ]
            value: root.settings.mediaSource
            onEdited: value => root.settings.mediaSource = value
        }
    }
}
