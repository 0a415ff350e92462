import QtQuick

import Randblatt.Controls

// A module's symbol on a tile of the module's colour.
Rectangle {
    id: root

    property string symbol
    property color tint

    width: 28
    height: 28
    radius: 7
    color: tint
    border.width: 1
    border.color: Qt.rgba(0, 0, 0, 0.1)

    Symbol {
        anchors.centerIn: parent
        name: root.symbol
        size: 16
        color: Qt.rgba(0, 0, 0, 0.78)
    }
}
