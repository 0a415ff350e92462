import QtQuick

import Randblatt.Controls
import Randblatt.Forms
import Randblatt.Settings
import Randblatt.SettingsUI

// The settings window: four tabs, whose controls write at once.
FocusScope {
    id: root

    required property AppSettings settings
    required property ModuleListModel modules
    required property ThemeEditor editor
    // The media module, if there is one: see SpotifySettings.
    property var media: null
    property StoreHealth health: null
    property StoreBackups backups: null
    property ShortcutSetting shortcut: null

    // What comes back is to be seen.
    function undo(): void {
        if (!editor.undoHistory.undo())
            return
        bar.currentIndex = 2
        Voice.say(root, "Rückgängig gemacht")
    }

    component Page: Loader {
        required property int index
        readonly property bool current: bar.currentIndex === index

        anchors.fill: parent
        // Made when it is first looked at, and kept with its place.
        active: current || item !== null
        visible: current
    }

    focus: true

    Rectangle {
        anchors.fill: parent
        color: FormStyle.ground
    }

    SettingsTabBar {
        id: bar

        anchors.left: parent.left
        anchors.right: parent.right
        tabs: [
            { label: "Allgemein", symbol: "gearshape" },
            { label: "Module", symbol: "square.grid.2x2" },
            { label: "Design", symbol: "paintbrush" },
            { label: "Spotify", symbol: "music.note" }
        ]
    }

    Item {
        anchors.top: bar.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: undoBar.active ? undoBar.top : foot.top
        anchors.bottomMargin: undoBar.active ? 8 : 0

        Page {
            index: 0
            sourceComponent: GeneralSettings {
                settings: root.settings
                health: root.health
                backups: root.backups
                shortcut: root.shortcut
            }
        }

        Page {
            index: 1
            sourceComponent: ModuleSettings {
                settings: root.settings
                modules: root.modules
            }
        }

        Page {
            index: 2
            sourceComponent: DesignSettings {
                settings: root.settings
                editor: root.editor
            }
        }

        Page {
            index: 3
            sourceComponent: SpotifySettings {
                settings: root.settings
                media: root.media
            }
        }
    }

    Loader {
        id: undoBar

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: foot.top
        anchors.bottomMargin: 12
        width: Math.min(parent.width - 2 * 24, FormStyle.formWidth)
        active: root.editor.undoHistory.offer !== ""
        sourceComponent: UndoBar {
            objectName: "undoBar"
            message: root.editor.undoHistory.offer
            appearance: CardAppearance {
                textWhite: FormStyle.dark
            }
            onUndone: root.undo()
            onHeld: hold => root.editor.undoHistory.holdOffer(hold)
        }
    }

    // Where there is no tray, this is the way out.
    Item {
        id: foot

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: 48

        Rectangle {
            width: parent.width
            height: 1
            color: FormStyle.hairline
        }

        FormButton {
            objectName: "quitButton"
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            text: "Randblatt beenden"
            onClicked: Qt.quit()
        }
    }

    UndoKey {
        window: root.Window.window
        onPressed: root.undo()
    }

    Shortcut {
        sequences: ["Ctrl+Tab", "Ctrl+PgDown"]
        onActivated: bar.step(bar.currentIndex + 1)
    }

    Shortcut {
        sequences: ["Ctrl+Shift+Tab", "Ctrl+PgUp"]
        onActivated: bar.step(bar.currentIndex - 1)
    }
}
