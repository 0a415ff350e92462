import QtQuick

import Randblatt.Controls
import Randblatt.Settings
import Randblatt.Sidebar

// The sidebar: the enabled modules' cards in a column that scrolls when it is taller than the panel.
FocusScope {
    id: root

    required property SidebarModel model
    required property AppSettings settings
    required property SidebarUIState uiState
    // Whether the desktop blends the panel with what lies behind it.
    property bool composited: true

    // The cards' places in the window, for a desktop that has to cut the window to them.
    readonly property var cardShapes: root.shapes(false)
    // The places of the frosted cards, for a desktop that can blur what lies behind them.
    readonly property var blurShapes: root.shapes(true)
    // The place of the quick settings that are open; empty while none are.
    readonly property rect quickShape: {
        const area = root.quickCard === null ? Qt.rect(0, 0, 0, 0) : root.quickCard.quickArea
        return area.width === 0 ? area : Qt.rect(column.x + area.x,
            column.y + root.quickCard.y + area.y - flickable.contentY, area.width, area.height)
    }
    readonly property bool isOnScreen: Window.visibility !== Window.Hidden
    // The panel starts to slide in before it has its contents: they come with the second frame.
    property bool hasShownAFrame: false
    // The accent that was typed while nothing has the keyboard, and waits for its letter.
    property string accent

    // The card whose quick settings are open; null while none are.
    property ModuleWindow quickCard: null

    signal openSettingsRequested
    // The user is done with the panel.
    signal dismissRequested

    // The combining accents of the keys that wait for a letter. A text field knows them by itself, but does not hear
    // of a key that came before it had the keyboard.
    readonly property var accents: ({
        [Qt.Key_Dead_Grave]: "\u0300",
        [Qt.Key_Dead_Acute]: "\u0301",
        [Qt.Key_Dead_Circumflex]: "\u0302",
        [Qt.Key_Dead_Tilde]: "\u0303",
        [Qt.Key_Dead_Diaeresis]: "\u0308",
        [Qt.Key_Dead_Abovering]: "\u030a",
        [Qt.Key_Dead_Caron]: "\u030c",
        [Qt.Key_Dead_Cedilla]: "\u0327"
    })

    function shapes(frostedOnly: bool): var {
        if (emptyState.active)
            return frostedOnly && !root.settings.globalTheme.frosted
                ? [] : [Qt.rect(emptyState.x, emptyState.y, emptyState.width, emptyState.height)]
        const found = []
        for (let i = 0; i < cards.count; ++i) {
            const card = cards.itemAt(i) as ModuleWindow
            if (card !== null && (card.config.frosted || !frostedOnly))
                found.push(Qt.rect(column.x, column.y + card.y - flickable.contentY, card.width, card.height))
        }
        return found
    }

    // Scrolls until what has the keyboard is seen: after a key all of it, else at least some of it, so that a
    // click leaves everything where it is.
    function reveal(wholly: bool): void {
        const item = Window.activeFocusItem
        if (item !== null && item !== root && root.isOnScreen)
            flickable.contentY = FocusReveal.contentY(flickable, item, wholly)
    }

    // One card at a time has its quick settings open.
    function followQuick(card: ModuleWindow, open: bool): void {
        if (open && quickCard !== null)
            quickCard.setQuick(false)
        if (open)
            quickCard = card
        else if (quickCard === card)
            quickCard = null
    }

    // Closes the quick settings; whether any were open.
    function closeQuick(): bool {
        const card = quickCard
        if (card !== null)
            card.setQuick(false)
        return card !== null
    }

    // The card that has the keyboard, or -1.
    function focusedCard(): int {
        for (let i = 0; i < cards.count; ++i) {
            if (cards.itemAt(i)?.activeFocus)
                return i
        }
        return -1
    }

    // Gives the keyboard to the card that is `step` cards on, or to the first or last where none has it.
    function goToCard(step: int): void {
        const present = focusedCard()
        const next = present < 0 ? (step > 0 ? 0 : cards.count - 1) : (present + step + cards.count) % cards.count
        const card = cards.itemAt(next) as ModuleWindow
        if (card !== null) {
            card.enter()
            revealing.wholly = true
            revealing.restart()
        }
    }

    function openQuick(): void {
        const card = cards.itemAt(Math.max(0, focusedCard())) as ModuleWindow
        if (card !== null)
            card.setQuick(true)
    }

    // Takes back the latest change of the card that has the keyboard, or, if it has none, the latest of all.
    function undo(): bool {
        let latest = null
        for (let i = 0; i < cards.count; ++i) {
            const card = cards.itemAt(i) as ModuleWindow
            if (card === null)
                continue
            if (card.activeFocus && card.module.undoHistory.canUndo)
                return card.undo()
            if (latest === null || card.module.undoHistory.latest() > latest.module.undoHistory.latest())
                latest = card
        }
        return latest !== null && latest.undo()
    }

    // The first text field or editor that takes what is typed while nothing has the keyboard.
    function typingTarget(): Item {
        for (let i = 0; i < cards.count; ++i) {
            const card = cards.itemAt(i) as ModuleWindow
            if (card !== null && card.view !== null && card.view.typingTarget)
                return card.view.typingTarget
        }
        return null
    }

    function typeInto(target: Item, text: string): void {
        target.forceActiveFocus(Qt.ShortcutFocusReason)
        const field = target as TextInput
        const editor = target as TextEdit
        if (field !== null)
            field.insert(field.cursorPosition, text)
        else if (editor !== null)
            editor.insert(editor.cursorPosition, text)
    }

    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: "Quillbar"

    // What is open in the cards has had the key before.
    Keys.onEscapePressed: {
        if (!root.closeQuick())
            dismissRequested()
    }
    Keys.onMenuPressed: openQuick()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
            openQuick()
            event.accepted = true
            return
        }
        if (event.key in root.accents) {
            root.accent = root.accents[event.key]
            event.accepted = true
            return
        }
        const typed = event.text.length > 0 && event.text.charCodeAt(0) > 0x20 && event.text.charCodeAt(0) !== 0x7f
        const target = typed && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier)) ? root.typingTarget() : null
        if (target !== null) {
            // An accent and its letter are one sign where there is one.
            root.typeInto(target, (event.text + root.accent).normalize("NFC"))
            event.accepted = true
        }
        if (event.text.length > 0)
            root.accent = ""
    }

    Window.onActiveFocusItemChanged: revealing.restart()
    onIsOnScreenChanged: {
        if (!isOnScreen)
            root.closeQuick()
    }

    // Once the key or click has done its work, and the cursor is where it belongs.
    Timer {
        id: revealing

        objectName: "revealing"

        property bool wholly: false

        interval: 0
        onTriggered: {
            root.reveal(wholly)
            wholly = false
        }
    }

    Connections {
        target: root.uiState

        function onTyped(): void {
            revealing.wholly = true
            revealing.restart()
        }
    }

    // Derived from what is open, so that no card can undo what another one holds.
    Binding {
        target: root.uiState
        property: "keepOpen"
        value: root.quickCard !== null
    }

    Connections {
        target: root.Window.window
        enabled: !root.hasShownAFrame

        function onFrameSwapped(): void {
            root.hasShownAFrame = true
        }
    }

    UndoKey {
        window: root.Window.window
        onPressed: root.undo()
    }

    Shortcut {
        sequence: "Ctrl+,"
        onActivated: root.openSettingsRequested()
    }

    Shortcut {
        sequence: "F6"
        onActivated: root.goToCard(1)
    }

    Shortcut {
        sequence: "Shift+F6"
        onActivated: root.goToCard(-1)
    }

    Flickable {
        id: flickable

        anchors.fill: parent
        contentHeight: column.height + 2 * 36
        flickableDirection: Flickable.VerticalFlick
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height
        visible: root.model.count > 0

        Column {
            id: column

            x: 14
            y: 36
            width: flickable.width - 2 * x
            spacing: 12

            Repeater {
                id: cards

                model: root.model

                ModuleWindow {
                    width: column.width
                    settings: root.settings
                    viewport: flickable
                    composited: root.composited
                    isReady: root.hasShownAFrame
                    isOnScreen: root.isOnScreen
                    onQuickChanged: open => root.followQuick(this, open)
                    onOpenSettingsRequested: root.openSettingsRequested()
                }
            }
        }
    }

    ScrollMark {
        anchors.right: parent.right
        anchors.rightMargin: 4
        flickable: flickable
    }

    Loader {
        id: emptyState

        anchors.centerIn: parent
        active: root.model.count === 0

        // By its address: most panels never show it.
        Component.onCompleted: setSource("SidebarEmptyState.qml", {
            config: root.settings.globalTheme,
            opaque: !root.composited
        })

        Binding {
            target: emptyState.item
            property: "config"
            value: root.settings.globalTheme
            when: emptyState.status === Loader.Ready
        }

        Binding {
            target: emptyState.item
            property: "opaque"
            value: !root.composited
            when: emptyState.status === Loader.Ready
        }

        Connections {
            target: emptyState.item
            ignoreUnknownSignals: true

            function onOpenSettingsRequested(): void {
                root.openSettingsRequested()
            }
        }
    }
}
