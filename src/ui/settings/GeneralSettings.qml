import QtQuick

import Randblatt.Forms
import Randblatt.Settings
import Randblatt.SettingsUI

// The tab for the panel's behaviour, its trigger and its size.
FormScroll {
    id: root

    required property AppSettings settings
    property StoreHealth health: null
    property StoreBackups backups: null
    property ShortcutSetting shortcut: null

    FormSection {
        objectName: "storeTrouble"
        visible: unsaved.text !== "" || aside.text !== ""
        heading: "Gespeicherte Daten"

        FormRow {
            id: unsaved

            objectName: "unsaved"
            visible: text !== ""
            height: visible ? implicitHeight : 0
            text: root.health?.sentence ?? ""
            labelWidth: FormStyle.sized(400)

            FormButton {
                objectName: "retrySaving"
                anchors.right: parent.right
                text: "Erneut versuchen"
                onClicked: root.health.retry()
            }
        }

        FormRow {
            id: aside

            objectName: "aside"
            visible: text !== ""
            height: visible ? implicitHeight : 0
            text: root.health?.asideSentence ?? ""
            labelWidth: FormStyle.sized(400)

            FormButton {
                objectName: "openAsideFolder"
                anchors.right: parent.right
                text: "Ordner öffnen"
                onClicked: root.health.openAsideFolder()
            }
        }
    }

    FormSection {
        heading: "Verhalten"

        ToggleRow {
            objectName: "alwaysVisible"
            text: "Leiste immer sichtbar"
            on: root.settings.alwaysVisible
            onEdited: on => root.settings.alwaysVisible = on
        }

        ToggleRow {
            objectName: "launchAtLogin"
            text: "Beim Anmelden automatisch starten"
            on: root.settings.launchAtLogin
            onEdited: on => root.settings.launchAtLogin = on
        }
    }

    FormSection {
        heading: "Einblenden"

        FormRow {
            text: "Seite"

            SegmentedPicker {
                objectName: "sidebarSide"
                width: parent.width
                name: "Seite"
                options: [{ value: "left", label: "Links" }, { value: "right", label: "Rechts" }]
                value: root.settings.sidebarSide
                onEdited: value => root.settings.sidebarSide = value
            }
        }

        FormRow {
            text: "Auslöser"
            labelAtTop: true

            RadioPicker {
                objectName: "triggerMode"
                width: parent.width
                name: "Auslöser"
                options: [
                    { value: "corners", label: "Nur Ecken (oben/unten links)" },
                    { value: "leftEdge", label: "Ganzer linker Rand (wie das Dock)" },
                    { value: "both", label: "Ecken + linker Rand" }
                ]
                value: root.settings.triggerMode
                onEdited: value => root.settings.triggerMode = value
            }
        }

        SliderRow {
            objectName: "cornerSize"
            text: "Größe der Eck-Zone: " + Numbers.whole(shownNumber)
            from: 30
            to: 200
            stepSize: 5
            number: root.settings.cornerSize
            onEdited: number => root.settings.cornerSize = number
        }

        SliderRow {
            objectName: "edgeThickness"
            text: "Randempfindlichkeit: " + Numbers.whole(shownNumber)
            from: 1
            to: 12
            stepSize: 1
            number: root.settings.edgeThickness
            onEdited: number => root.settings.edgeThickness = number
        }

        SliderRow {
            objectName: "revealDelay"
            text: "Verzögerung: " + Numbers.twoDecimals(shownNumber) + " s"
            from: 0
            to: 0.8
            stepSize: 0.02
            number: root.settings.revealDelay
            onEdited: number => root.settings.revealDelay = number
        }

        ShortcutRow {
            shortcut: root.shortcut
        }
    }

    FormSection {
        heading: "Größe (modular)"

        SliderRow {
            objectName: "panelWidth"
            text: "Breite: " + Numbers.whole(shownNumber)
            from: 300
            to: 720
            stepSize: 10
            number: root.settings.panelWidth
            onEdited: number => root.settings.panelWidth = number
        }

        SliderRow {
            objectName: "panelHeightFraction"
            text: Numbers.percent(shownNumber) + " % der Bildschirmhöhe"
            from: 0.3
            to: 1
            stepSize: 0.05
            number: root.settings.panelHeightFraction
            onEdited: number => root.settings.panelHeightFraction = number
        }
    }

    BackupSettings {
        visible: root.backups !== null
        backups: root.backups
    }
}
