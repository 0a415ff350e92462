import QtQuick

// Turns pages with the wheel: a notch sideways, or as much on a touchpad, turns one page; what follows at once
// is the same gesture.
WheelHandler {
    id: root

    // Turns by the wheel that otherwise scrolls, while Shift is held; for what lies over scrolling lists.
    property bool isShifted: false
    property real angle: 0
    readonly property Timer quiet: Timer {
        interval: 150
        onTriggered: root.angle = 0
    }

    // 1 for the page on the right, -1 for the one on the left.
    signal turned(step: int)

    orientation: isShifted ? Qt.Vertical : Qt.Horizontal
    acceptedModifiers: isShifted ? Qt.ShiftModifier : Qt.KeyboardModifierMask
    acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad

    onWheel: event => {
        const wasBelow = Math.abs(angle) < 120
        angle += isShifted ? event.angleDelta.y : event.angleDelta.x
        if (wasBelow && Math.abs(angle) >= 120)
            turned(angle > 0 ? -1 : 1)
        quiet.restart()
    }
}
