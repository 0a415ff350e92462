import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls

// One half of the board's sideways sign: the button for the page before or after.
T.AbstractButton {
    id: root

    required property CardAppearance appearance
    // -1 for the left half, 1 for the right one.
    required property int step
    // Whether Tab leads here.
    required property bool isReachable

    // Both halves lie on whole pixels.
    readonly property int halfSize: Math.round(6 * appearance.textScale)

    implicitWidth: halfSize + Metrics.cardPadding + 1
    implicitHeight: 24
    focusPolicy: isReachable || activeFocus ? Qt.TabFocus : Qt.NoFocus
    opacity: !enabled ? 0.35 : down ? 0.6 : 1

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        Item {
            x: root.step > 0 ? 1 : parent.width - width - 1
            anchors.verticalCenter: parent.verticalCenter
            width: root.halfSize
            height: 2 * root.halfSize
            clip: true

            Symbol {
                x: root.step > 0 ? -root.halfSize : 0
                name: "chevron.left.chevron.right"
                size: 2 * root.halfSize
                color: root.hovered ? root.appearance.foreground : root.appearance.secondary
            }
        }
    }

    background: FocusRing {
        anchors.margins: 2
        visible: root.visualFocus
        accent: root.appearance.accent

        // Not on the button itself: with a handler it would take the right mouse button as well.
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
