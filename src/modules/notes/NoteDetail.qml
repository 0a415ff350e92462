import QtQuick

import Randblatt.Controls

// The note that is open: its text to edit, and what can be done with it.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    function show(): void {
        editor.load(browsing.editBody)
        if (activeFocus)
            editor.forceActiveFocus(Qt.OtherFocusReason)
    }

    // By key only where nothing is lost by it.
    function leave(): void {
        if (browsing.editBody === browsing.savedBody)
            browsing.back()
    }

    Component.onCompleted: {
        if (!browsing.loadingBody)
            show()
    }

    Keys.onEscapePressed: leave()
    Keys.onBackPressed: leave()
    Keys.onPressed: event => {
        event.accepted = event.matches(StandardKey.Save)
        if (event.accepted && saveButton.enabled)
            browsing.save()
    }

    Connections {
        target: root.browsing

        function onLoadingBodyChanged(): void {
            if (!root.browsing.loadingBody)
                root.show()
        }
    }

    Connections {
        target: editor.content

        function onEdited(text: string): void {
            root.browsing.editBody = text
        }
    }

    NoteEditor {
        id: editor

        objectName: "bodyEditor"
        anchors.top: parent.top
        anchors.bottom: actions.top
        anchors.bottomMargin: Metrics.tightGap
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        focus: true
        visible: !root.browsing.loadingBody
        appearance: root.appearance
        name: root.browsing.selected.name
    }

    BusyMark {
        objectName: "loadingBody"
        anchors.centerIn: editor
        appearance: root.appearance
        size: 18
        running: root.browsing.loadingBody
    }

    Item {
        id: actions

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Metrics.gap
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        height: saveButton.height

        PlainButton {
            id: deleteButton

            objectName: "deleteButton"
            x: -reach
            anchors.verticalCenter: parent.verticalCenter
            text: "Notiz löschen"
            symbol: "trash"
            showsText: false
            color: root.appearance.destructive
            accent: root.appearance.accent
            onClicked: root.browsing.deleteSelected()

            ControlTip {
                control: deleteButton
            }
        }

        ProminentButton {
            id: saveButton

            objectName: "saveButton"
            anchors.right: parent.right
            accent: root.appearance.accent
            textSize: Metrics.bodySize * root.appearance.textScale
            text: "Speichern"
            enabled: !root.browsing.loadingBody
            onClicked: root.browsing.save()

            ControlTip {
                control: saveButton
            }
        }
    }
}
