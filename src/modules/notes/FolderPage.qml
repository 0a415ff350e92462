import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// The page with the folders, of which one is shown on the notes page.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NotesService service

    // The empty name stands for all folders.
    signal chosen(name: string)
    signal closed

    Keys.onEscapePressed: closed()
    Keys.onBackPressed: closed()

    PlainButton {
        id: back

        objectName: "notesButton"
        x: Metrics.cardPadding - reach
        anchors.verticalCenter: title.verticalCenter
        text: "Zurück zu den Notizen"
        symbol: "chevron.left"
        showsText: false
        symbolSize: 13 * root.appearance.textScale
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.closed()
    }

    CardText {
        id: title

        y: 3
        height: Math.max(implicitHeight, 22)
        anchors.left: back.right
        anchors.leftMargin: 2
        anchors.right: refresh.left
        appearance: root.appearance
        text: "Ordner"
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }

    PlainButton {
        id: refresh

        objectName: "foldersRefreshButton"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.cardPadding - reach
        anchors.verticalCenter: title.verticalCenter
        text: "Ordner neu laden"
        symbol: "arrow.clockwise"
        showsText: false
        symbolSize: 14 * root.appearance.textScale
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.service.loadFolders()
    }

    RowList {
        id: list

        objectName: "folderList"
        anchors.top: title.bottom
        anchors.topMargin: Metrics.tightGap
        anchors.bottom: parent.bottom
        width: parent.width
        focus: true
        spacing: 1
        appearance: root.appearance
        model: root.service.folders
        Accessible.name: "Ordner"
        onChosen: if (currentItem)
            (currentItem as NotesRow).clicked()

        header: Item {
            width: list.width
            height: all.height + list.spacing

            NotesRow {
                id: all

                objectName: "allNotesRow"
                width: parent.width
                appearance: root.appearance
                symbol: "tray.full"
                text: "Alle Notizen"
                isChosen: root.service.currentFolder === ""
                trailingSymbol: isChosen ? "checkmark" : ""
                focusPolicy: Qt.TabFocus
                Keys.onReturnPressed: clicked()
                Keys.onEnterPressed: clicked()
                onClicked: root.chosen("")
            }
        }

        delegate: NotesRow {
            required property string name

            objectName: "folderRow"
            width: list.width
            appearance: root.appearance
            symbol: "folder"
            text: name
            isChosen: root.service.currentFolder === name
            trailingSymbol: isChosen ? "checkmark" : ""
            onClicked: root.chosen(name)
        }
    }
}
