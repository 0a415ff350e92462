import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Settings

// A card's quick settings: the height presets, the module's own menu, and the way to all settings.
T.Pane {
    id: root

    required property SidebarModule module
    required property AppSettings settings
    // The card's present height in points.
    required property real cardHeight

    readonly property color accent: Qt.rgba(0.55, 0.45, 1.0, 1.0)
    readonly property var presets: [
        { label: "Klein", height: 160 },
        { label: "Mittel", height: 240 },
        { label: "Groß", height: 360 },
        { label: "XL", height: 480 }
    ]

    signal close
    signal openSettingsRequested

    objectName: "quickSettings"
    padding: 14
    implicitWidth: Metrics.sized(298)
    implicitHeight: contentItem.implicitHeight + 2 * padding
    focusPolicy: Qt.NoFocus
    Accessible.role: Accessible.Dialog
    Accessible.name: "Optionen"
    Keys.onEscapePressed: root.close()

    FocusTrap {
        scope: root
    }

    contentItem: Column {
        spacing: 10

        Item {
            width: parent.width
            height: Metrics.sized(20)

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: "Optionen"
                color: "white"
                font.pixelSize: Metrics.sized(13)
                font.bold: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            PlainButton {
                objectName: "closeQuickSettings"
                anchors.right: parent.right
                anchors.rightMargin: -reach
                anchors.verticalCenter: parent.verticalCenter
                text: "Schließen"
                symbol: "xmark.circle.fill"
                symbolSize: 15
                color: Qt.rgba(1, 1, 1, 0.6)
                onClicked: root.close()
            }
        }

        Rectangle {
            width: parent.width
            height: 1
            color: "white"
            opacity: 0.16
        }

        Text {
            text: "Höhe"
            color: Qt.rgba(1, 1, 1, 0.6)
            font.pixelSize: Metrics.sized(11)
            font.weight: Font.DemiBold
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Row {
            id: chipRow

            Accessible.role: Accessible.Grouping
            Accessible.name: "Höhe"
            width: parent.width
            spacing: 6

            Repeater {
                model: root.presets

                HeightChip {
                    required property var modelData
                    required property int index

                    // The first control that gets the keyboard.
                    focus: index === 0
                    width: (chipRow.width - 3 * chipRow.spacing) / 4
                    text: modelData.label
                    chosen: Math.abs(root.cardHeight - modelData.height) < 1.0
                    accent: root.accent
                    onClicked: root.settings.setHeight(modelData.height, root.module.id)
                }
            }
        }

        Loader {
            width: parent.width
            visible: item !== null
            Component.onCompleted: {
                const menu = root.module.makeQuickMenu()
                if (menu.source.toString() !== "")
                    setSource(menu.source, menu.properties)
            }
        }

        Rectangle {
            width: parent.width
            height: 1
            color: "white"
            opacity: 0.16
        }

        PlainButton {
            objectName: "allSettingsButton"
            x: -reach
            text: "Design & alle Einstellungen…"
            symbol: "paintbrush"
            showsText: true
            onClicked: root.openSettingsRequested()
        }
    }

    background: Rectangle {
        // A shadow of three rings, which costs no effect and is there on every renderer.
        Repeater {
            model: 3

            Rectangle {
                required property int index

                anchors.fill: parent
                anchors.margins: -1 - 3 * index
                anchors.topMargin: 2 - 3 * index
                anchors.bottomMargin: -4 - 4 * index
                z: -1
                radius: 16 + 3 * index
                color: Qt.rgba(0, 0, 0, 0.14 - 0.035 * index)
            }
        }

        radius: 16
        color: Qt.rgba(0.12, 0.12, 0.2, 0.97)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, 0.18)

        // Presses on the overlay's ground stay here.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            hoverEnabled: true
        }
    }
}
