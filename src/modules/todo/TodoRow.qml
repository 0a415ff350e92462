import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Todo

// A task of the list: its check mark, its title – or the field that changes it – and its delete button.
T.ItemDelegate {
    id: root

    required property CardAppearance appearance
    required property int index
    required property var taskId
    required property string title
    required property bool done
    required property TodoActions actions

    readonly property bool isEditing: actions.editedTask === taskId
    // The field while the title is being edited.
    readonly property RowEditor editor: editorLoader.item as RowEditor
    property bool isPooled: false
    readonly property bool isCurrent: ListView.isCurrentItem
    // What can be pressed in the row is seen where the pointer or the keyboard is, whichever was used last.
    readonly property bool isActive: Focus.isPointing || !ListView.view?.activeFocus ? hovered : isCurrent
    readonly property real symbolSize: 15 * appearance.textScale
    // A button's reach around its symbol that makes it easy to hit.
    readonly property real reach: Math.max(5, (24 - symbolSize) / 2)

    readonly property var hints: Qt.styleHints
    // When it was clicked, in milliseconds.
    property real lastTap: 0

    signal toggled
    signal deleted

    // A click gives the row the keyboard, a second one at once opens its title.
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

    leftPadding: Metrics.cardPadding + 8
    rightPadding: Metrics.cardPadding + 8
    topPadding: 6
    bottomPadding: 6
    implicitHeight: Math.max(24, implicitContentHeight + topPadding + bottomPadding)
    objectName: "todoRow"
    hoverEnabled: true
    focusPolicy: isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus

    Accessible.name: title

    // A row in the pool is only out of the picture; it must be gone for assistive tools as well.
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
        if (event.key === Qt.Key_F2 || event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            startEditing()
        else if (event.key === Qt.Key_Space)
            toggled()
        else if (event.key === Qt.Key_Delete)
            deleted()
        else
            event.accepted = false
    }

    contentItem: Item {
        implicitHeight: Math.max(titleText.implicitHeight, root.symbolSize)

        SymbolCheckBox {
            id: statusButton

            objectName: "statusButton"
            x: -reach
            anchors.verticalCenter: parent.verticalCenter
            text: "Erledigt: " + root.title
            on: root.done
            symbolOn: "checkmark.circle.fill"
            symbolOff: "circle"
            symbolSize: root.symbolSize
            reach: root.reach
            color: root.done ? root.appearance.accent : root.appearance.secondary
            accent: root.appearance.accent
            focusPolicy: root.isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus
            onClicked: root.toggled()
        }

        CardText {
            id: titleText

            objectName: "rowTitle"
            x: root.symbolSize + Metrics.tightGap
            width: deleteButton.x - x
            height: parent.height
            visible: !root.isEditing
            appearance: root.appearance
            color: root.done ? root.appearance.secondary : root.appearance.foreground
            font.strikeout: root.done
            wrapMode: Text.Wrap
            maximumLineCount: 3
            text: root.title
            Accessible.ignored: true
        }

        Loader {
            id: editorLoader

            x: titleText.x
            width: titleText.width
            anchors.verticalCenter: parent.verticalCenter
            active: root.isEditing && !root.isPooled
            sourceComponent: editorComponent
            // A row that comes back into sight goes on where it was.
            onLoaded: {
                if (root.ListView.view.activeFocus)
                    root.takeKeyboard()
            }
        }

        PlainButton {
            id: deleteButton

            objectName: "deleteButton"
            x: parent.width - width + reach
            anchors.verticalCenter: parent.verticalCenter
            text: "Löschen: " + root.title
            showsText: false
            symbol: "trash"
            symbolSize: root.symbolSize
            reach: root.reach
            opacity: !enabled ? 0 : down ? 0.6 : 1
            enabled: root.isActive && !root.isEditing
            color: root.appearance.secondary
            accent: root.appearance.accent
            focusPolicy: root.isCurrent || activeFocus ? Qt.TabFocus : Qt.NoFocus
            onClicked: root.deleted()
        }
    }

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: Metrics.cardPadding
            anchors.rightMargin: Metrics.cardPadding
            radius: Metrics.rowRadius
            color: root.appearance.alpha(root.hovered || root.activeFocus ? 0.05 : 0)
            border.width: root.isEditing ? 1 : 0
            border.color: root.appearance.accent

            FocusRing {
                visible: root.visualFocus
                accent: root.appearance.accent
            }
        }
    }

    Component {
        id: editorComponent

        RowEditor {
            appearance: root.appearance
            actions: root.actions
            // What is typed is seen, wherever the list has been scrolled meanwhile.
            onTextEdited: root.ListView.view.positionViewAtIndex(root.index, ListView.Contain)
            onFinished: renames => root.finishEditing(renames)
        }
    }
}
