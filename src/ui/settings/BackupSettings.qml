import QtQuick

import Randblatt.Forms
import Randblatt.Settings

// The copies of the user's data, and bringing one back.
FormSection {
    id: root

    required property StoreBackups backups
    property bool showsCopies: false
    readonly property var copies: root.backups?.copies ?? []
    readonly property string chosen: root.backups?.chosen ?? ""

    function description(): string {
        if (root.backups?.problem)
            return root.backups.problem
        if (root.copies.length === 0)
            return "Es gibt noch keine Sicherung; die erste entsteht kurz nach dem Start."
        return "Gesichert werden die letzten sieben Tage und die letzten vier Wochen, zuletzt "
            + root.backups.label(root.copies[0]) + "."
    }

    heading: "Sicherungen"

    FormRow {
        text: "Aufgaben, Notizzettel und Einstellungen"
        description: root.description()
        labelWidth: FormStyle.sized(400)

        FormButton {
            objectName: "bringBack"
            anchors.right: parent.right
            visible: root.copies.length > 0 && root.chosen === ""
            text: "Daten einspielen…"
            onClicked: root.showsCopies = !root.showsCopies
        }
    }

    FormRow {
        objectName: "chosenCopy"
        visible: root.chosen !== ""
        height: visible ? implicitHeight : 0
        text: visible ? "Beim nächsten Start: Stand von " + root.backups.label(root.chosen) : ""
        description: "Der jetzige Stand bleibt unter anderem Namen aufgehoben."
        labelWidth: FormStyle.sized(400)

        FormButton {
            objectName: "keepPresent"
            anchors.right: parent.right
            text: "Doch nicht"
            onClicked: root.backups.unchoose()
        }
    }

    Repeater {
        model: root.showsCopies && root.chosen === "" ? root.copies : []

        FormRow {
            id: row

            required property string modelData

            text: root.backups.label(modelData)
            labelWidth: FormStyle.sized(400)

            FormButton {
                objectName: "choose-" + row.modelData
                anchors.right: parent.right
                text: "Einspielen"
                onClicked: root.backups.choose(row.modelData)
            }
        }
    }
}
