import QtQuick

import Randblatt.Forms
import Randblatt.Settings
import Randblatt.SettingsUI

// The tab for the look of the cards: of all together, or of each.
FormScroll {
    id: root

    required property AppSettings settings
    required property ThemeEditor editor

    FormSection {
        heading: "Geltungsbereich"

        ToggleRow {
            objectName: "perModuleTheme"
            text: "Jedes Fenster einzeln gestalten"
            on: root.settings.perModuleTheme
            onEdited: on => root.settings.perModuleTheme = on
        }

        FormRow {
            visible: root.settings.perModuleTheme
            text: "Fenster"

            SegmentedPicker {
                objectName: "scope"
                width: parent.width
                name: "Fenster"
                options: root.editor.scopes
                value: root.editor.selectedID
                onEdited: value => root.editor.selectedID = value
            }
        }

        FormRow {
            objectName: "scopeName"
            text: "Du bearbeitest: " + root.editor.scopeName
        }
    }

    FormSection {
        heading: "Glas"

        FormRow {
            text: "Stil"

            SegmentedPicker {
                objectName: "style"
                width: parent.width
                name: "Stil"
                options: [{ value: "frosted", label: "Milchglas" }, { value: "clear", label: "Liquid Glass" }]
                value: root.editor.frosted ? "frosted" : "clear"
                onEdited: value => root.editor.frosted = value === "frosted"
            }
        }

        FormRow {
            text: "Tönungsfarbe"

            ColorWell {
                objectName: "tint"
                text: "Tönungsfarbe"
                color: root.editor.tint
                onEdited: color => root.editor.tint = color
                onOpened: root.editor.keepColors()
                onCancelled: root.editor.restoreColors()
            }
        }

        SliderRow {
            objectName: "tintStrength"
            text: "Tönung"
            from: 0
            to: 1
            stepSize: 0.01
            number: root.editor.tintStrength
            onEdited: number => root.editor.tintStrength = number
        }

        SliderRow {
            objectName: "darkness"
            text: "Abdunkeln (weniger durchsichtig)"
            from: 0
            to: 0.8
            stepSize: 0.01
            number: root.editor.darkness
            onEdited: number => root.editor.darkness = number
        }

        SliderRow {
            objectName: "blur"
            text: "Unschärfe dahinter"
            from: 0
            to: 60
            stepSize: 1
            number: root.editor.blur
            onEdited: number => root.editor.blur = number
        }
    }

    FormSection {
        heading: "Beleuchtung"

        ToggleRow {
            objectName: "lightsEnabled"
            text: "Beleuchtung anzeigen"
            on: root.editor.lightsEnabled
            onEdited: on => root.editor.lightsEnabled = on
        }

        FormRow {
            text: "Lichtfarbe"

            ColorWell {
                objectName: "lightColor"
                text: "Lichtfarbe"
                color: root.editor.lightColor
                onEdited: color => root.editor.lightColor = color
                onOpened: root.editor.keepColors()
                onCancelled: root.editor.restoreColors()
            }
        }

        SliderRow {
            objectName: "lightsIntensity"
            text: "Lichtstärke"
            from: 0
            to: 0.8
            stepSize: 0.01
            number: root.editor.lightsIntensity
            onEdited: number => root.editor.lightsIntensity = number
        }
    }

    FormSection {
        heading: "Text"

        ToggleRow {
            objectName: "textWhite"
            text: "Heller Text (sonst schwarz)"
            on: root.editor.textWhite
            onEdited: on => root.editor.textWhite = on
        }

        SliderRow {
            objectName: "haloStrength"
            text: "Halo um den Text"
            from: 0
            to: 1
            stepSize: 0.01
            number: root.editor.haloStrength
            onEdited: number => root.editor.haloStrength = number
        }

        SliderRow {
            objectName: "textScale"
            text: "Textgröße"
            from: 0.7
            to: 1.6
            stepSize: 0.01
            number: root.editor.textScale
            onEdited: number => root.editor.textScale = number
        }

        FormRow {
            FormButton {
                objectName: "resetText"
                anchors.right: parent.right
                text: "Text zurücksetzen"
                onClicked: root.editor.resetText()
            }
        }
    }

    FormButton {
        objectName: "resetTheme"
        anchors.right: parent.right
        anchors.rightMargin: FormStyle.rowPadding
        text: "Auf Standard zurücksetzen"
        onClicked: root.editor.reset()
    }
}
