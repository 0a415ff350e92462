import QtQuick

import Randblatt.Controls
import Randblatt.Notes

// Browses the notes of the notes application: a page with the notes, and beside it one with the folders.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property NoteBrowsing browsing

    // Keys turn pages only from lists: in a note they are the editor's, also those that it has no use for.
    readonly property bool turnsByKey: pages.currentIndex > 0
                                       || (browsing.edit === null && !browsing.newNote.isOpen)
    readonly property bool isOnScreen: Window.window !== null && Window.visibility !== Window.Hidden

    function appear(): void {
        if (isOnScreen)
            browsing.appear()
    }

    // An empty name stands for all folders.
    function chooseFolder(name: string): void {
        browsing.chooseFolder(name)
        turnTo(0)
    }

    function turnTo(page: int): void {
        if (page === pages.currentIndex || page < 0 || page >= pages.count)
            return
        const hadFocus = activeFocus
        pages.currentIndex = page
        if (hadFocus)
            Focus.give(pages.currentItem)
    }

    onIsOnScreenChanged: appear()
    Component.onCompleted: appear()

    Keys.onPressed: event => {
        const turns = event.modifiers === Qt.ControlModifier
                    && (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
        if (turns && turnsByKey)
            turnTo(event.key === Qt.Key_PageUp ? 0 : 1)
        event.accepted = turns
    }

    ListView {
        id: pages

        objectName: "notesPages"
        anchors.fill: parent
        focus: true
        model: 2
        orientation: ListView.Horizontal
        snapMode: ListView.SnapOneItem
        highlightRangeMode: ListView.StrictlyEnforceRange
        preferredHighlightBegin: 0
        preferredHighlightEnd: 0
        highlightMoveDuration: Metrics.duration(200)
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        // The folders are made after the first frame and stay.
        cacheBuffer: width
        clip: true
        Accessible.role: Accessible.Pane
        Accessible.name: "Notizen"

        onWidthChanged: positionViewAtIndex(currentIndex, ListView.Beginning)

        PageWheel {
            onTurned: step => root.turnTo(pages.currentIndex + step)
        }

        delegate: FocusScope {
            id: page

            required property int index

            width: pages.width
            height: pages.height
            focus: ListView.isCurrentItem
            // Nothing out of sight is on the way of the Tab key.
            visible: Math.abs(x - pages.contentX) < pages.width

            Loader {
                anchors.fill: parent
                focus: true
                sourceComponent: page.index === 0 ? notesPage : folderPage
            }
        }
    }

    Item {
        anchors.fill: parent

        PageWheel {
            isShifted: true
            onTurned: step => root.turnTo(pages.currentIndex + step)
        }
    }

    Component {
        id: notesPage

        NotesPage {
            focus: true
            appearance: root.appearance
            browsing: root.browsing
            onFoldersWanted: root.turnTo(1)
        }
    }

    Component {
        id: folderPage

        FolderPage {
            focus: true
            appearance: root.appearance
            service: root.browsing.service
            onChosen: name => root.chooseFolder(name)
            onClosed: root.turnTo(0)
            Keys.onLeftPressed: root.turnTo(0)
        }
    }
}
