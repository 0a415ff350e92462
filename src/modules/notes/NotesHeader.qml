import QtQuick

import Randblatt.Controls

// The head of the notes page: what is shown and of which folder, and the ways on from here.
Item {
    id: root

    required property CardAppearance appearance
    required property string heading
    // Empty for the notes of all folders.
    required property string folder
    required property bool hasBack
    required property bool isLoading
    required property bool composing

    signal closed
    signal refreshed
    signal composerWanted
    signal foldersWanted

    implicitHeight: folderName.y + folderName.height

    PlainButton {
        id: back

        objectName: "backButton"
        x: -reach
        anchors.verticalCenter: title.verticalCenter
        visible: root.hasBack
        text: "Zurück"
        symbol: "chevron.left"
        showsText: false
        symbolSize: 13 * root.appearance.textScale
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.closed()
    }

    CardText {
        id: title

        objectName: "heading"
        y: 3
        height: Math.max(implicitHeight, 22)
        anchors.left: back.visible ? back.right : parent.left
        anchors.leftMargin: back.visible ? 2 : 0
        anchors.right: busy.visible ? busy.left : refresh.left
        anchors.rightMargin: Metrics.tightGap
        appearance: root.appearance
        text: root.heading
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }

    BusyMark {
        id: busy

        objectName: "loadingNotes"
        anchors.right: refresh.left
        anchors.rightMargin: 2
        anchors.verticalCenter: title.verticalCenter
        appearance: root.appearance
        running: root.isLoading
    }

    PlainButton {
        id: refresh

        objectName: "refreshButton"
        anchors.right: compose.left
        anchors.rightMargin: 2
        anchors.verticalCenter: title.verticalCenter
        text: "Neu laden"
        symbol: "arrow.clockwise"
        showsText: false
        symbolSize: 14 * root.appearance.textScale
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.refreshed()

        ControlTip {
            control: refresh
        }
    }

    PlainButton {
        id: compose

        objectName: "composeButton"
        anchors.right: parent.right
        anchors.rightMargin: -reach
        anchors.verticalCenter: title.verticalCenter
        enabled: !root.composing
        text: "Neue Notiz"
        symbol: "square.and.pencil"
        showsText: false
        symbolSize: 14 * root.appearance.textScale
        color: root.appearance.foreground
        accent: root.appearance.accent
        onClicked: root.composerWanted()

        ControlTip {
            control: compose
        }
    }

    CardText {
        id: folderName

        objectName: "folderName"
        anchors.top: title.bottom
        anchors.left: parent.left
        anchors.right: hint.left
        anchors.rightMargin: Metrics.gap
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        text: root.folder === "" ? "Alle Notizen" : root.folder
    }

    PlainButton {
        id: hint

        objectName: "swipeHint"
        anchors.right: parent.right
        anchors.rightMargin: -reach
        anchors.verticalCenter: folderName.verticalCenter
        text: "← wischen für Ordner"
        textSize: Metrics.captionSize * root.appearance.textScale
        color: root.appearance.secondary
        accent: root.appearance.accent
        reach: 3
        onClicked: root.foldersWanted()
    }
}
