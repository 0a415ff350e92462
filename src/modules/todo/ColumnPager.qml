import QtQuick
import QtQuick.Templates as T
import Randblatt.Controls

// The sign that the board goes on sideways; its halves turn the page. Its right edge is that of the column.
Row {
    id: root

    required property CardAppearance appearance
    // Whether Tab leads here.
    required property bool isReachable
    required property bool hasPrevious
    required property bool hasNext

    // Both halves on whole pixels.
    readonly property int halfSize: Math.round(6 * appearance.textScale)

    signal pageTurned(step: int)

    // Gives the keyboard to the half that turns on by `step`, or back where there is no further page.
    function takeKeyboard(step: int): void {
        const onward = step > 0 ? next : previous
        const back = step > 0 ? previous : next
        const half = onward.enabled ? onward : back
        half.forceActiveFocus(Qt.TabFocusReason)
    }

    component Half: T.AbstractButton {
        id: half

        property int step: 1

        implicitWidth: root.halfSize + Metrics.cardPadding
        implicitHeight: 24
        focusPolicy: root.isReachable ? Qt.TabFocus : Qt.NoFocus
        opacity: !enabled ? 0.35 : down ? 0.6 : 1

        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: clicked()

        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        onClicked: root.pageTurned(step)

        contentItem: Item {
            Item {
                x: half.step > 0 ? 0 : parent.width - width
                anchors.verticalCenter: parent.verticalCenter
                width: root.halfSize
                height: 2 * root.halfSize
                clip: true

                Symbol {
                    x: half.step > 0 ? -root.halfSize : 0
                    name: "chevron.left.chevron.right"
                    size: 2 * root.halfSize
                    color: half.hovered ? root.appearance.foreground : root.appearance.secondary
                }
            }
        }

        background: FocusRing {
            anchors.margins: 2
            visible: half.visualFocus
            accent: root.appearance.accent
        }

        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }

    Half {
        id: previous

        objectName: "previousColumn"
        step: -1
        text: "Vorherige Spalte"
        enabled: root.hasPrevious
    }

    Half {
        id: next

        objectName: "nextColumn"
        text: "Nächste Spalte"
        enabled: root.hasNext
    }
}
