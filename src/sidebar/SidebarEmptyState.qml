import QtQuick

import Randblatt.Controls
import Randblatt.Theme

// What the sidebar shows when no module is enabled: a card that says so and leads to the settings.
ThemedGlass {
    id: root

    readonly property CardAppearance appearance: CardAppearance {
        textWhite: root.config.textWhite
        textScale: Wishes.textScale
    }

    signal openSettingsRequested

    width: Metrics.sized(280)
    height: Metrics.sized(168)
    corner: 18

    Column {
        anchors.centerIn: parent
        spacing: Metrics.wideGap

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "square.dashed"
            size: 30
            color: root.appearance.secondary
        }

        CardText {
            anchors.horizontalCenter: parent.horizontalCenter
            appearance: root.appearance
            text: "Keine Module aktiviert"
        }

        ProminentButton {
            objectName: "openSettingsButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Einstellungen öffnen"
            onClicked: root.openSettingsRequested()
        }
    }
}
