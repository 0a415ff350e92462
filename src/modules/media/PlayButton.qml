import QtQuick
import QtQuick.Templates as T
import Randblatt.Controls

// The round, glowing button that starts and stops playback.
T.AbstractButton {
    id: root

    required property color accent
    required property color ringColor
    required property string symbol
    property real diameter: 50
    property real symbolSize: 18

    readonly property real glowRadius: 9

    implicitWidth: diameter
    implicitHeight: diameter
    focusPolicy: Qt.TabFocus
    scale: down ? 0.96 : 1
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            size: root.symbolSize * 1.25
            color: "black"
        }
    }

    background: Item {
        // Pictures, which go into one draw call with the symbol.
        Symbol {
            anchors.centerIn: parent
            name: "glow"
            size: root.diameter + 2 * root.glowRadius
            color: Qt.alpha(root.accent, 0.6)
        }

        Symbol {
            anchors.centerIn: parent
            name: "circle.fill"
            // The disc takes 20 of the symbol's 24 units.
            size: root.diameter * 1.2
            color: root.hovered ? Qt.lighter(root.accent, 1.06) : root.accent
        }

        FocusRing {
            visible: root.visualFocus
            radius: width / 2
            anchors.margins: -4
            accent: root.ringColor
        }

        // Not on the button itself: with a handler it would take the right mouse button as well.
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
