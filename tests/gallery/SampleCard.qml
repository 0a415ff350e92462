import QtQuick
import Randblatt.Controls
import Randblatt.Theme

// A card with one of everything that stands on cards, below a caption that names its look.
Item {
    id: root

    required property string caption
    property themeConfig config
    // Only the first lines.
    property bool brief: false
    property bool opaque: false

    readonly property color foreground: config.textWhite ? "white" : "black"

    Rectangle {
        anchors.centerIn: captionText
        width: captionText.implicitWidth + 14
        height: captionText.implicitHeight + 4
        radius: height / 2
        color: Qt.rgba(0, 0, 0, 0.5)
    }

    Text {
        id: captionText

        x: 12
        y: -26
        text: root.caption
        color: "white"
        font.pixelSize: 11
    }

    CardAppearance {
        id: look

        textWhite: root.config.textWhite
        textScale: root.config.textScale
    }

    ThemedGlass {
        anchors.fill: parent
        config: root.config
        corner: 18
        opaque: root.opaque

        Halo {
            anchors.fill: parent
            anchors.margins: Metrics.cardPadding
            color: root.config.textWhite ? "black" : "white"
            strength: root.config.haloStrength

            Column {
                id: list

                anchors.fill: parent
                spacing: Metrics.gap

                Row {
                    spacing: 8

                    Symbol {
                        name: "checklist"
                        color: look.foreground
                        size: 15 * look.textScale
                        anchors.verticalCenter: parent.verticalCenter
                    }

                    CardText {
                        appearance: look
                        text: "To-Do"
                        font.weight: Font.DemiBold
                    }
                }

                Rectangle {
                    width: parent.width
                    height: field.implicitHeight + 16
                    radius: 9
                    color: look.alpha(0.08)

                    Row {
                        id: field

                        x: 10
                        anchors.verticalCenter: parent.verticalCenter
                        spacing: 8

                        Symbol {
                            name: "plus.circle.fill"
                            color: look.accent
                            size: 13 * look.textScale
                            anchors.verticalCenter: parent.verticalCenter
                        }

                        CardText {
                            appearance: look
                            text: "Neue Aufgabe…"
                            color: look.tertiary
                        }
                    }
                }

                Repeater {
                    model: root.brief ? ["Fahrrad zur Inspektion"]
                                      : ["Angebot für die Werkstatt schreiben", "Fahrrad zur Inspektion"]

                    Row {
                        id: task

                        required property string modelData

                        x: 10
                        spacing: 8

                        Symbol {
                            name: "circle"
                            color: look.secondary
                            size: 14 * look.textScale
                            anchors.verticalCenter: parent.verticalCenter
                        }

                        CardText {
                            width: Math.min(implicitWidth, list.width - x - task.x)
                            appearance: look
                            text: task.modelData
                        }
                    }
                }

                CardText {
                    visible: !root.brief
                    appearance: look
                    size: Metrics.captionSize
                    text: "Erledigt · gestern, 14:00 – 15:30"
                    color: look.secondary
                }
            }
        }
    }
}
