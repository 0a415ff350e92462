import QtQuick

// Takes right mouse presses, and touches that are held, inside its bounds; everything else goes through.
Item {
    id: root

    signal action

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        onPressed: root.action()
    }

    TapHandler {
        acceptedDevices: PointerDevice.TouchScreen | PointerDevice.Stylus
        onLongPressed: root.action()
    }
}
