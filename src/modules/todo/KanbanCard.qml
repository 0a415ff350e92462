import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Todo

// A task of the board: its title – or the field that changes it – and the button of its menu.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    required property int index
    required property var taskId
    required property string title
    required property TodoActions actions
    // Whether Tab leads here when the card is current.
    required property bool isReachable

    readonly property bool isEditing: actions.editedTask === taskId
    // The field while the title is being edited.
    readonly property RowEditor editor: editorLoader.item as RowEditor
    property bool isPooled: false
    readonly property bool isTabStop: isReachable && ListView.isCurrentItem
    // The frame of the menu button; it can be clicked further out.
    readonly property real menuWidth: 18 * Math.max(1, appearance.textScale)

    readonly property var hints: Qt.styleHints
    // When it was clicked, in milliseconds.
    property real lastTap: 0

    signal menuRequested(byKeyboard: bool)
    signal deleted

    // A click gives the card the keyboard, a second one at once opens its title.
    function tap(): void {
        const now = Date.now()
        const isSecond = now - lastTap < hints.mouseDoubleClickInterval
        lastTap = isSecond ? 0 : now
        if (isSecond)
            startEditing()
        else if (!isEditing)
            forceActiveFocus(Qt.MouseFocusReason)
    }

    function startEditing(): void {
        ListView.view.currentIndex = index
        actions.beginEdit(taskId)
        takeKeyboard()
    }

    function finishEditing(renames: bool): void {
        if (renames)
            actions.commitEdit()
        else
            actions.dropEdit()
        Focus.give(this)
    }

    // With the keyboard in the field, if there is one; a title that is untouched is there to be replaced.
    function takeKeyboard(): void {
        if (editor)
            editor.takeKeyboard(editor.text === title)
        else
            Focus.give(this)
    }

    leftPadding: Metrics.cardPadding + 10
    rightPadding: Metrics.cardPadding + 10
    topPadding: 8
    bottomPadding: 8
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    objectName: "kanbanCard"
    hoverEnabled: true
    text: title
    focusPolicy: isTabStop || activeFocus ? Qt.TabFocus : Qt.NoFocus

    Accessible.name: title

    // A card in the pool is only out of the picture; it must be gone for assistive tools as well.
    ListView.onPooled: {
        isPooled = true
        visible = false
    }
    ListView.onReused: {
        isPooled = false
        visible = true
    }
    onActiveFocusChanged: if (activeFocus)
        ListView.view.currentIndex = index

    onClicked: tap()

    Keys.enabled: !isEditing
    Keys.onPressed: event => {
        event.accepted = true
        if (event.key === Qt.Key_F2)
            startEditing()
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Menu)
            menuRequested(true)
        else if (event.key === Qt.Key_Delete)
            deleted()
        else
            event.accepted = false
    }

    contentItem: Item {
        implicitHeight: titleText.implicitHeight

        CardText {
            id: titleText

            width: parent.width - root.menuWidth - 4
            height: parent.height
            appearance: root.appearance
            size: Metrics.calloutSize
            wrapMode: Text.Wrap
            maximumLineCount: 4
            text: root.title
            visible: !root.isEditing
            Accessible.ignored: true
        }

        Loader {
            id: editorLoader

            width: titleText.width
            anchors.verticalCenter: parent.verticalCenter
            active: root.isEditing && !root.isPooled
            sourceComponent: RowEditor {
                appearance: root.appearance
                actions: root.actions
                size: Metrics.calloutSize
                onTextEdited: root.ListView.view.positionViewAtIndex(root.index, ListView.Contain)
                onFinished: renames => root.finishEditing(renames)
            }
            // A card that comes back into sight goes on where it was.
            onLoaded: {
                if (root.ListView.view.activeFocus)
                    root.takeKeyboard()
            }
        }

        PlainButton {
            id: menuButton

            objectName: "cardMenuButton"
            x: parent.width - (root.menuWidth + width) / 2
            width: root.menuWidth + 2 * 6
            height: Math.max(24, implicitHeight)
            anchors.verticalCenter: parent.verticalCenter
            text: "Aktionen: " + root.title
            showsText: false
            symbol: "ellipsis"
            symbolSize: 13 * root.appearance.textScale
            color: root.appearance.secondary
            accent: root.appearance.accent
            focusPolicy: root.isTabStop || activeFocus ? Qt.TabFocus : Qt.NoFocus
            Accessible.role: Accessible.ButtonMenu
            onClicked: root.menuRequested(visualFocus)
        }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding
            anchors.rightMargin: Metrics.cardPadding
            radius: 9
            color: Qt.rgba(1, 1, 1, root.activeFocus ? 0.16 : 0.1)
            border.width: root.isEditing || root.appearance.highContrast ? 1 : 0
            border.color: root.isEditing ? root.appearance.accent : root.appearance.rim

            FocusRing {
                radius: 11
                visible: root.visualFocus
                accent: root.appearance.accent
            }
        }
    }

    ControlTip {
        control: root
        isWanted: titleText.truncated && !root.isEditing
    }
}
