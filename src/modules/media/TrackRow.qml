import QtQuick
import Randblatt.Controls

// A track: a press plays it, and in the user's own playlists it can be removed.
MediaRow {
    id: root

    property bool editable: false
    property bool canRemove: true

    signal removed

    titleSize: Metrics.bodySize
    isFramed: false
    trailing: editable ? trash : null
    leading: Symbol {
        name: "play.fill"
        size: 12
        color: root.appearance.secondary
    }

    Component {
        id: trash

        PlainButton {
            objectName: "removeButton"
            text: "Entfernen: " + root.title
            symbol: "trash"
            showsText: false
            symbolSize: 14
            color: root.appearance.secondary
            accent: root.appearance.accent
            focusPolicy: Qt.NoFocus
            enabled: root.canRemove
            onClicked: root.removed()
        }
    }
}
