import QtQuick

import Randblatt.Controls

// Writes a new note. What was typed stays in the view, so that it outlasts the composer.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    Component.onCompleted: {
        title.text = browsing.newTitle
        body.load(browsing.newBody)
        title.forceActiveFocus(Qt.OtherFocusReason)
    }

    Keys.onEscapePressed: root.browsing.back()
    Keys.onBackPressed: root.browsing.back()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Save)
        if (event.accepted)
            browsing.create()
    }

    FieldFrame {
        id: titleFrame

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
            onTextChanged: root.browsing.newTitle = text
            onAccepted: body.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    Connections {
        target: body.content

        function onEdited(text: string): void {
            root.browsing.newBody = text
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
        name: "Text der Notiz"
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
        enabled: root.browsing.canCreate
        onClicked: root.browsing.create()
    }
}
