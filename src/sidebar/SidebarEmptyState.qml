import QtQuick

import Randblatt.Controls

// What the sidebar shows when no module is enabled.
Column {
    id: root

    signal openSettingsRequested

    spacing: Metrics.wideGap

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "square.dashed"
        size: 30
        opacity: 0.8
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Keine Module aktiviert"
        color: "white"
        font.pixelSize: Metrics.bodySize
    }

    ProminentButton {
        objectName: "openSettingsButton"
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Einstellungen öffnen"
        onClicked: root.openSettingsRequested()
    }
}
