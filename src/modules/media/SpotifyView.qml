import QtQuick
import Randblatt.Controls
import Randblatt.Media
import Randblatt.Settings

// The content of the media card: what the media source in the settings asks for.
FocusScope {
    id: root

    required property CardAppearance appearance
    required property AppSettings settings
    required property MediaKeys mediaKeys
    required property color accent

    readonly property bool showsSystem: settings.mediaSource === "system"

    Loader {
        anchors.fill: parent
        focus: true
        sourceComponent: root.showsSystem ? system : null
    }

    Component {
        id: system

        SystemMediaView {
            appearance: root.appearance
            mediaKeys: root.mediaKeys
            accent: root.accent
        }
    }
}
