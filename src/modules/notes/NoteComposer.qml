import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// Writes a new note.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    readonly property NewNote note: browsing.newNote

    Component.onCompleted: {
        title.text = note.title
        title.forceActiveFocus(Qt.OtherFocusReason)
    }

    Keys.onEscapePressed: root.browsing.back()
    Keys.onBackPressed: root.browsing.back()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Save)
        if (event.accepted && !event.isAutoRepeat)
            note.create()
    }

    Connections {
        target: root.note

        function onChanged(): void {
            title.text = root.note.title
        }
    }

    NoteNotice {
        id: notice

        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        text: root.note.notice
    }

    FieldFrame {
        id: titleFrame

        anchors.top: notice.bottom
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        height: Math.max(30, title.implicitHeight + 2 * 7)
        appearance: root.appearance
        active: title.activeFocus

        PlainTextField {
            id: title

            objectName: "titleField"
            x: 8
            width: parent.width - 2 * x
            height: parent.height
            appearance: root.appearance
            activeFocusOnTab: true
            placeholderText: "Titel"
            onTextChanged: root.note.title = text
            onAccepted: body.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    NoteEditor {
        id: body

        objectName: "newBodyEditor"
        anchors.top: titleFrame.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: saveButton.top
        anchors.bottomMargin: Metrics.tightGap
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        appearance: root.appearance
        content: root.note.body
        name: "Text der Notiz"
    }

    PlainButton {
        objectName: "discardButton"
        x: Metrics.cardPadding - reach
        anchors.verticalCenter: saveButton.verticalCenter
        visible: !root.note.isEmpty
        text: "Verwerfen"
        textSize: Metrics.bodySize * root.appearance.textScale
        color: root.appearance.secondary
        accent: root.appearance.accent
        onClicked: root.note.discard()
    }

    ProminentButton {
        id: saveButton

        objectName: "createButton"
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Metrics.gap
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding
        accent: root.appearance.accent
        textSize: Metrics.bodySize * root.appearance.textScale
        text: "Speichern"
        enabled: root.note.canCreate
        onClicked: root.note.create()
    }
}
