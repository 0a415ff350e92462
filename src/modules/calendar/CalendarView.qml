import QtQuick
import QtQuick.Templates as T

import Randblatt.Calendar
import Randblatt.Controls

// The agenda of the coming days, with a form to add an event.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property CalendarService service
    required property AgendaModel agenda
    required property AgendaRefresh refresh
    required property EventDraft draft

    property bool didRequest: false
    // The refresh counts this card among those on screen.
    property bool counted: false

    readonly property bool showAdd: draft.open
    readonly property var durations: [15, 30, 45, 60, 90, 120, 180]
    readonly property bool onScreen: Window.window !== null && Window.visibility !== Window.Hidden
    // Takes what is typed while nothing has the keyboard.
    readonly property Item typingTarget: showAdd ? titleInput : null
    property Item titleInput: null

    function followScreen(shown: bool): void {
        if (shown && !didRequest) {
            didRequest = true
            service.requestAccess()
        }
        if (shown === counted)
            return
        counted = shown
        if (shown) {
            draft.beginView()
            refresh.cardShown()
        } else {
            cardLoader.card?.close()
            refresh.cardHidden()
        }
    }

    // By the button. One question at a time: a server that hangs would answer each in turn.
    function askAgain(): void {
        if (!service.loading)
            service.requestAccess()
    }

    function toggleForm(): void {
        draft.open = !draft.open
        if (draft.open)
            titleInput.forceActiveFocus(Qt.TabFocusReason)
    }

    onOnScreenChanged: followScreen(onScreen)
    Component.onCompleted: {
        draft.beginView()
        followScreen(onScreen)
    }
    Component.onDestruction: followScreen(false)

    ListView {
        id: list

        objectName: "agenda"
        anchors.fill: parent
        model: root.service.authorized ? root.agenda : null
        reuseItems: true
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        bottomMargin: Metrics.cardPadding
        keyNavigationEnabled: false
        // The list would give the keyboard to its current row, also from the form above: it has none.
        currentIndex: -1
        Accessible.role: Accessible.List
        Accessible.name: "Termine"

        function scroll(distance: real): void {
            const lowest = originY + contentHeight + bottomMargin - height
            contentY = Math.max(originY, Math.min(contentY + distance, lowest))
        }

        // The row that the keyboard was on, or comes to.
        property int keyRow: 0

        // The row that the keyboard goes to comes into sight, the first one with what stands above it.
        function step(event: KeyEvent, target: int): void {
            event.accepted = itemAtIndex(keyRow)?.activeFocus ?? false
            if (!event.accepted)
                return
            const row = Math.max(0, Math.min(target, count - 1))
            if (row === 0)
                positionViewAtBeginning()
            positionViewAtIndex(row, ListView.Contain)
            itemAtIndex(row).forceActiveFocus(Qt.TabFocusReason)
        }

        function openCard(row: EventRow): void {
            cardLoader.row = row.index
            cardLoader.focusReason = row.visualFocus ? Qt.TabFocusReason : Qt.PopupFocusReason
            cardLoader.active = true
            cardLoader.card.openAt(row.eventId)
        }

        Keys.onUpPressed: event => step(event, keyRow - 1)
        Keys.onDownPressed: event => step(event, keyRow + 1)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                scroll(event.key === Qt.Key_PageUp ? -height : height)
                event.accepted = true
            } else if (event.key === Qt.Key_Home) {
                step(event, 0)
            } else if (event.key === Qt.Key_End) {
                step(event, count - 1)
            }
        }

        T.ScrollBar.vertical: CardScrollBar {
            appearance: root.appearance
        }

        header: AgendaTop {
            id: top

            property real knownHeight: 0

            width: list.width
            appearance: root.appearance
            authorized: root.service.authorized
            statusMessage: root.service.statusMessage
            reason: root.service.reason
            isOutdated: root.service.isOutdated
            loading: root.service.loading
            showAdd: root.showAdd
            formHeight: form.implicitHeight
            // Above the events, the list would let it grow out of sight.
            onHeightChanged: {
                const growth = Math.max(0, height - knownHeight)
                if (root.showAdd || list.contentY - list.originY <= growth + 1)
                    list.positionViewAtBeginning()
                knownHeight = height
            }
            onFormToggled: root.toggleForm()
            onReloadWanted: root.askAgain()

            AddEventForm {
                id: form

                objectName: "addForm"
                width: parent.width
                y: Metrics.gap
                appearance: root.appearance
                draft: root.draft
                durations: root.durations
                calendars: root.service.calendars
                saving: root.service.saving
                onSubmitted: root.draft.add()
                Component.onCompleted: root.titleInput = titleInput
            }
        }

        delegate: EventRow {
            width: list.width
            appearance: root.appearance
            isCurrent: index === Math.min(list.keyRow, list.count - 1)
            onChosen: list.openCard(this)
            onFocused: list.keyRow = index
        }

        section.property: "day"
        section.delegate: DayHeading {
            width: list.width
            appearance: root.appearance
        }
    }

    // Made when it is first wanted.
    Loader {
        id: cardLoader

        readonly property EventCard card: item as EventCard
        property int row: -1
        // How the keyboard goes back to it.
        property int focusReason: Qt.PopupFocusReason

        active: false
        sourceComponent: EventCard {
            parent: root
            agenda: root.agenda
            textScale: root.appearance.textScale
            onClosed: list.itemAtIndex(cardLoader.row)?.forceActiveFocus(cardLoader.focusReason)
        }
    }
}
