import QtQuick

import Randblatt.Controls
import Randblatt.Forms
import Randblatt.Settings

// What a new user sees first: which modules to show and how. Every choice is written at once.
FocusScope {
    id: root

    required property AppSettings settings
    required property color accent
    // Each module's colour by its id.
    required property var tints

    signal finished

    component ModeRow: FormRow {
        id: mode

        property alias options: picker.options
        property alias value: picker.value

        signal edited(string value)

        labelWidth: FormStyle.sized(140)

        SegmentedPicker {
            id: picker

            objectName: mode.objectName
            width: parent.width
            name: mode.text
            onEdited: value => mode.edited(value)
        }
    }

    function finish(): void {
        settings.hasOnboarded = true
        finished()
    }

    focus: true

    Rectangle {
        anchors.fill: parent
        color: FormStyle.ground
    }

    FormScroll {
        anchors.fill: parent
        formWidth: FormStyle.sized(480)

        Column {
            width: parent.width
            topPadding: 12
            spacing: 8

            Symbol {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "sparkles"
                size: 52
                color: root.accent
            }

            FormText {
                width: parent.width
                topPadding: 6
                text: "Willkommen bei Quillbar"
                font.pixelSize: FormStyle.sized(26)
                font.weight: Font.Bold
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            FormText {
                width: parent.width
                text: "Kurz einrichten – später jederzeit per Rechtsklick änderbar."
                color: FormStyle.secondary
                font.pixelSize: FormStyle.sized(14)
                horizontalAlignment: Text.AlignHCenter
            }
        }

        FormSection {
            Repeater {
                model: [
                    { moduleID: "todo", label: "Aufgaben", symbol: "checklist" },
                    { moduleID: "spotify", label: "Musik", symbol: "music.note" },
                    { moduleID: "notes", label: "Notizen", symbol: "note.text" }
                ]

                ToggleRow {
                    required property var modelData

                    objectName: "enabled-" + modelData.moduleID
                    text: modelData.label
                    symbol: modelData.symbol
                    tint: root.tints[modelData.moduleID]
                    on: root.settings.enabledModuleIDs.includes(modelData.moduleID)
                    onEdited: on => root.settings.setEnabled(modelData.moduleID, on)
                }
            }
        }

        FormSection {
            ModeRow {
                objectName: "todoViewMode"
                text: "Aufgaben als"
                options: [{ value: "list", label: "Liste" }, { value: "kanban", label: "Kanban-Tafel" }]
                value: root.settings.todoViewMode
                onEdited: value => root.settings.todoViewMode = value
            }

            ModeRow {
                objectName: "mediaSource"
                text: "Musik über"
                options: [{ value: "spotify", label: "Spotify (Premium)" }, { value: "system", label: "Medienwiedergabe" }]
                value: root.settings.mediaSource
                onEdited: value => root.settings.mediaSource = value
            }

            ModeRow {
                objectName: "notesMode"
                text: "Notizen in"
                options: [{ value: "scratch", label: "Notizheft" }, { value: "apple", label: "Apple Notizen" }]
                value: root.settings.notesMode
                onEdited: value => root.settings.notesMode = value
            }
        }

        FormButton {
            objectName: "finish"
            anchors.horizontalCenter: parent.horizontalCenter
            prominent: true
            width: FormStyle.sized(220)
            textSize: FormStyle.sized(15)
            text: "Los geht's"
            onClicked: root.finish()
        }
    }
}
