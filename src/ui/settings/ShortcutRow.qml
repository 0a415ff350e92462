import QtQuick

import Randblatt.Forms
import Randblatt.Settings

// Records the key that shows and hides the panel from anywhere. Where the desktop grants none, it names the command
// to bind there.
FormRow {
    id: root

    property ShortcutSetting shortcut: null

    readonly property bool isAvailable: root.shortcut?.isAvailable ?? false
    readonly property string label: root.shortcut?.label ?? ""
    property bool isRecording: false

    function take(event: var): void {
        event.accepted = true
        if (event.key === Qt.Key_Escape)
            isRecording = false
        else if (shortcut.record(event.key, event.modifiers))
            isRecording = false
    }

    text: "Tastenkürzel"
    visible: shortcut !== null
    labelAtTop: !isAvailable

    Column {
        width: parent.width
        spacing: 6

        Row {
            visible: root.isAvailable
            anchors.right: parent.right
            spacing: 8

            FormButton {
                objectName: "recordShortcut"
                text: root.isRecording ? "Tasten drücken …" : root.label || "Keines"
                Accessible.name: root.isRecording ? text : "Tastenkürzel aufnehmen: " + text
                onClicked: root.isRecording = !root.isRecording
                onActiveFocusChanged: if (!activeFocus) root.isRecording = false
                Keys.priority: Keys.BeforeItem
                Keys.onShortcutOverride: event => event.accepted = root.isRecording
                Keys.onPressed: event => {
                    if (root.isRecording)
                        root.take(event)
                }
            }

            FormButton {
                objectName: "clearShortcut"
                visible: root.label !== ""
                text: "Entfernen"
                onClicked: root.shortcut.clear()
            }
        }

        FormText {
            objectName: "shortcutProblem"
            visible: text !== "" && root.isAvailable
            anchors.right: parent.right
            text: root.shortcut?.problem ?? ""
            color: FormStyle.secondary
            font.pixelSize: FormStyle.captionSize
        }

        FormText {
            visible: !root.isAvailable
            width: parent.width
            text: "Hier vergibt der Desktop die Tasten. In seinen Einstellungen lässt sich dieser Befehl an eine binden:"
            wrapMode: Text.Wrap
        }

        TextEdit {
            objectName: "shortcutCommand"
            visible: !root.isAvailable
            width: parent.width
            text: root.shortcut?.command ?? ""
            readOnly: true
            selectByMouse: true
            activeFocusOnTab: true
            wrapMode: TextEdit.WrapAnywhere
            color: FormStyle.secondary
            font.family: "monospace"
            font.pixelSize: FormStyle.captionSize
            Accessible.name: "Befehl zum Binden"
        }
    }
}
