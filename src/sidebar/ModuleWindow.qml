import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Settings
import Randblatt.Theme

// One card of the sidebar: the glass, a header with the module's symbol and title, and the module's view.
FocusScope {
    id: root

    required property SidebarModule module
    required property themeConfig config
    required property real cardHeight
    required property color tint
    required property AppSettings settings
    // The visible part of the sidebar, within which the quick settings stay.
    required property Item viewport
    property bool composited: true
    // The card may take the time to make its view.
    property bool isReady: true
    property bool isOnScreen: true

    readonly property bool showQuick: quick.shown
    // Where the quick settings lie over the card; empty while they are not there.
    readonly property rect quickArea: quick.visible ? Qt.rect(quick.x, quick.y, quick.width, quick.height) : Qt.rect(0, 0, 0, 0)
    readonly property Item view: viewLoader.item as Item
    readonly property CardAppearance appearance: CardAppearance {
        textWhite: root.config.textWhite
        textScale: root.limitedTextScale(root.config.textScale) * Wishes.textScale
    }

    signal openSettingsRequested
    // The quick settings of this card were opened or closed.
    signal quickChanged(open: bool)

    function setQuick(open: bool): void {
        if (quick.shown === open)
            return
        const former = open ? root.Window.activeFocusItem : quick.former
        quick.shown = open
        root.quickChanged(open)
        if (open) {
            quick.former = root.holds(former) ? former : null
            quick.place()
        } else {
            Focus.give(quick.former ?? viewLoader)
        }
    }

    // Gives the keyboard to what had it in the card, or else to its first control.
    function enter(): void {
        Focus.give(viewLoader)
        const item = root.Window.activeFocusItem
        if (item === null || item as T.Control !== null || item.activeFocusOnTab)
            return
        const first = item.nextItemInFocusChain(true)
        if (root.holds(first))
            Focus.give(first)
    }

    function holds(item: Item): bool {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor === root)
                return true
        }
        return false
    }

    // Takes the card's latest deletion or overwriting back. The keyboard stays in the card.
    function undo(): bool {
        const hadFocus = root.activeFocus
        const undone = root.module.undoHistory.undo()
        if (undone)
            Voice.say(root, "Rückgängig gemacht")
        if (hadFocus && !root.activeFocus)
            Focus.give(viewLoader)
        return undone
    }

    function limitedTextScale(scale: real): real {
        const limited = Math.max(Math.min(scale, 1.6), 0.7)
        return Math.abs(limited - 1) >= 0.001 ? limited : 1
    }

    objectName: "moduleWindow"
    implicitHeight: cardHeight
    height: cardHeight
    // The quick settings of a low card reach over its neighbours.
    z: quick.visible ? 1 : 0
    Accessible.role: Accessible.Grouping
    Accessible.name: module.title
    Component.onDestruction: {
        if (quick.shown)
            root.quickChanged(false)
    }

    Keys.onMenuPressed: root.setQuick(true)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_F10 && (event.modifiers & Qt.ShiftModifier)) {
            root.setQuick(true)
            event.accepted = true
        }
    }

    Connections {
        target: root.appearance

        function onOptionsRequested(): void {
            root.setQuick(true)
        }
    }

    ThemedGlass {
        anchors.fill: parent
        config: root.config
        corner: 18
        opaque: !root.composited
        animated: root.isOnScreen && !Wishes.reducedMotion
        isComplete: root.isReady

        Loader {
            objectName: "veil"
            anchors.fill: parent
            active: root.appearance.highContrast
            sourceComponent: Rectangle {
                radius: 18
                color: root.appearance.veil
                border.width: 1
                border.color: root.appearance.rim
            }
        }

        RightClickCatcher {
            anchors.fill: parent
            onAction: root.setQuick(true)
        }

        Halo {
            anchors.fill: parent
            clip: true
            color: root.config.textWhite ? "black" : "white"
            // With the contents: the glow of a title alone would be worked out for nothing.
            strength: root.isReady ? root.config.haloStrength : 0

            Row {
                id: header

                x: Metrics.cardPadding
                y: 11
                spacing: 8

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: root.module.systemImage
                    size: Math.round(16 * root.appearance.textScale)
                    color: root.appearance.foreground
                }

                CardText {
                    objectName: "cardTitle"
                    anchors.verticalCenter: parent.verticalCenter
                    appearance: root.appearance
                    text: root.module.title
                    font.weight: Font.DemiBold
                }
            }

            Loader {
                id: viewLoader

                active: root.isReady

                anchors.top: header.bottom
                anchors.topMargin: 8
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: noticeBar.active ? noticeBar.top : undoBar.isBelow ? undoBar.top : parent.bottom
                anchors.bottomMargin: noticeBar.active || undoBar.isBelow ? Metrics.tightGap : 0
                focus: true
                Component.onCompleted: {
                    const view = root.module.makeView()
                    setSource(view.source, Object.assign({ appearance: root.appearance }, view.properties))
                }
            }

            // Below the view, which makes room for it: nothing is covered.
            Loader {
                id: noticeBar

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.leftMargin: Metrics.cardPadding
                anchors.rightMargin: Metrics.cardPadding
                anchors.bottom: undoBar.isBelow ? undoBar.top : parent.bottom
                anchors.bottomMargin: undoBar.isBelow ? Metrics.tightGap : Metrics.gap
                active: root.module.notice.text !== ""
                sourceComponent: NoticeBar {
                    objectName: "noticeBar"
                    appearance: root.appearance
                    message: root.module.notice.text
                    action: root.module.notice.action
                    isDismissible: root.module.notice.isDismissible
                    onActed: root.module.notice.act()
                    onDismissed: root.module.notice.dismiss()
                }
            }

            // Below the view, which makes room for it, or beside the title where the view has none to spare:
            // nothing is covered.
            Loader {
                id: undoBar

                readonly property bool isLow: root.cardHeight < 220
                readonly property bool isBelow: active && !isLow

                x: isLow ? header.x + header.width + Metrics.gap : Metrics.cardPadding
                y: isLow ? header.y + (header.height - height) / 2 : parent.height - height - Metrics.wideGap
                width: parent.width - x - Metrics.cardPadding
                active: root.module.undoHistory.offer !== ""
                sourceComponent: UndoBar {
                    objectName: "undoBar"
                    appearance: root.appearance
                    message: root.module.undoHistory.offer
                    isCompact: undoBar.isLow
                    onUndone: root.undo()
                    onHeld: hold => root.module.undoHistory.holdOffer(hold)
                }
            }
        }
    }

    CardDrop {
        anchors.fill: parent
        module: root.module
        tint: root.tint
    }

    Loader {
        id: quick

        property bool shown: false
        property real progress: shown ? 1 : 0
        // What in the card had the keyboard before.
        property Item former: null

        // Over the card, but wholly within what is seen of the sidebar.
        function place(): void {
            const top = root.mapToItem(root.viewport, 0, 0).y
            const lowest = root.viewport.height - height - 8
            y = Math.max(8, Math.min(top + 12, lowest)) - top
            Focus.give(item as Item)
        }

        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(Metrics.sized(298), root.width - 16)
        active: shown || progress > 0.01
        visible: active
        opacity: Math.min(1, Math.max(0, progress))
        transform: Translate {
            y: (1 - quick.progress) * 18
        }

        // A spring of response 0.3 s and damping fraction 0.85, in this animation's unit of 16 ms steps.
        Behavior on progress {
            enabled: !Wishes.reducedMotion

            SpringAnimation {
                spring: 7.0
                damping: 0.57
                epsilon: 0.004
            }
        }

        // By its address: the panel need not wait for a document that is not shown with it.
        Component.onCompleted: setSource("QuickSettingsOverlay.qml", {
            module: root.module,
            settings: root.settings,
            cardHeight: root.cardHeight
        })

        Binding {
            target: quick.item
            property: "cardHeight"
            value: root.cardHeight
            when: quick.status === Loader.Ready
        }

        Connections {
            target: quick.item
            ignoreUnknownSignals: true

            function onClose(): void {
                root.setQuick(false)
            }

            function onOpenSettingsRequested(): void {
                root.setQuick(false)
                root.openSettingsRequested()
            }
        }
    }
}
