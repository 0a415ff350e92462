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
        if (shown)
            refresh.cardShown()
        else
            refresh.cardHidden()
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
        activeFocusOnTab: contentHeight > height
        Accessible.role: Accessible.List
        Accessible.name: "Termine"

        function scroll(distance: real): void {
            const lowest = originY + contentHeight + bottomMargin - height
            contentY = Math.max(originY, Math.min(contentY + distance, lowest))
        }

        Keys.onUpPressed: scroll(-44)
        Keys.onDownPressed: scroll(44)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown) {
                scroll(event.key === Qt.Key_PageUp ? -height : height)
                event.accepted = true
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
            onAccessWanted: root.service.requestAccess()

            AddEventForm {
                id: form

                objectName: "addForm"
                width: parent.width
                y: Metrics.gap
                appearance: root.appearance
                draft: root.draft
                durations: root.durations
                saving: root.service.saving
                onSubmitted: root.draft.add()
                Component.onCompleted: root.titleInput = titleInput
            }
        }

        delegate: EventRow {
            width: list.width
            appearance: root.appearance
        }

        section.property: "day"
        section.delegate: DayHeading {
            width: list.width
            appearance: root.appearance
        }
    }

    FocusRing {
        visible: root.Window.activeFocusItem === list
        anchors.margins: 2
        accent: root.appearance.accent
    }
}
