import QtQuick
import QtQuick.Templates as T

import Randblatt.Controls
import Randblatt.Forms
import Randblatt.Settings

// One module: a handle to drag it by, its switch, its card's height and, for some, a choice of its mode.
FocusScope {
    id: root

    required property AppSettings settings
    required property int index
    required property string moduleID
    required property string title
    required property string symbol
    required property color tint
    required property bool moduleEnabled
    required property real cardHeight
    readonly property int lineHeight: 56
    readonly property bool dragged: dragger.active
    // How far the row has been dragged, in points.
    readonly property real offset: dragged ? dragger.translation.y : 0
    // How far it makes room for another one that is being dragged.
    property real shift: 0
    property bool makesRoom: false

    signal moveRequested(int by)
    signal dropped(real offset)

    function cancelDrag(): void {
        dragger.enabled = false
        dragger.enabled = true
    }

    width: parent ? parent.width : implicitWidth
    implicitHeight: column.height
    z: dragged ? 1 : 0
    transform: Translate {
        y: root.offset + root.shift
    }
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Keys.onPressed: event => {
        const direction = event.key === Qt.Key_Up ? -1 : event.key === Qt.Key_Down ? 1 : 0
        event.accepted = direction !== 0 && event.modifiers === Qt.AltModifier
        if (event.accepted)
            root.moveRequested(direction)
    }

    // Only while something is dragged: a drop puts the row where it already seems to be.
    Behavior on shift {
        enabled: root.makesRoom

        NumberAnimation {
            duration: Metrics.duration(140)
            easing.type: Easing.OutCubic
        }
    }

    FormHairline {
        visible: root.y > 0 && !root.dragged
    }

    // The row that is being dragged hovers over the others.
    Rectangle {
        visible: root.dragged
        x: 1
        width: parent.width - 2
        height: root.lineHeight
        radius: 9
        color: FormStyle.card
        border.width: 1
        border.color: FormStyle.alpha(0.25)
    }

    Column {
        id: column

        width: parent.width

        Item {
            width: parent.width
            height: root.lineHeight

            T.AbstractButton {
                id: handle

                objectName: "handle"
                x: 6
                width: 30
                height: 36
                anchors.verticalCenter: parent.verticalCenter
                text: root.title + " verschieben"
                focusPolicy: Qt.TabFocus
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.description: "Alt und Pfeil nach oben oder unten verschiebt das Modul."

                contentItem: Item {
                    Symbol {
                        anchors.centerIn: parent
                        name: "line.3.horizontal"
                        size: 16
                        color: FormStyle.text
                        opacity: handle.hovered || root.dragged ? 0.8 : 0.4
                    }
                }

                background: FormFocusRing {
                    visible: handle.visualFocus
                    anchors.margins: 0
                }

                HoverHandler {
                    cursorShape: root.dragged ? Qt.ClosedHandCursor : Qt.OpenHandCursor
                }

                DragHandler {
                    id: dragger

                    property real last: 0

                    target: null
                    dragThreshold: 4
                    grabPermissions: PointerHandler.CanTakeOverFromAnything
                    onTranslationChanged: {
                        if (active)
                            last = translation.y
                    }
                    onActiveChanged: {
                        if (!active)
                            root.dropped(last)
                    }
                }
            }

            ModuleTile {
                id: tile

                anchors.left: handle.right
                anchors.leftMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                symbol: root.symbol
                tint: root.tint
                opacity: root.moduleEnabled ? 1 : 0.5
            }

            FormText {
                anchors.left: tile.right
                anchors.leftMargin: 12
                anchors.right: heightLabel.left
                anchors.verticalCenter: parent.verticalCenter
                text: root.title
                font.weight: Font.Medium
                Accessible.ignored: true
                maximumLineCount: 1
                elide: Text.ElideRight
            }

            FormText {
                id: heightLabel

                x: FormStyle.rowPadding + FormStyle.labelWidth - width - 12
                anchors.verticalCenter: parent.verticalCenter
                text: "Höhe: " + Numbers.whole(heightSlider.value)
                color: FormStyle.secondary
                font.pixelSize: FormStyle.captionSize
            }

            FormSlider {
                id: heightSlider

                objectName: "height-" + root.moduleID
                x: FormStyle.rowPadding + FormStyle.labelWidth
                width: toggle.x - x - 18
                anchors.verticalCenter: parent.verticalCenter
                from: 120
                to: 700
                stepSize: 10
                number: root.cardHeight
                name: "Höhe von " + root.title
                onEdited: number => root.settings.setHeight(number, root.moduleID)
            }

            T.CheckBox {
                id: toggle

                objectName: "enabled-" + root.moduleID
                anchors.right: parent.right
                anchors.rightMargin: FormStyle.rowPadding
                anchors.verticalCenter: parent.verticalCenter
                text: root.title
                focusPolicy: Qt.TabFocus
                checked: root.moduleEnabled
                Accessible.name: text
                Accessible.onPressAction: toggle.clicked()
                Accessible.onToggleAction: toggle.clicked()
                implicitWidth: contentItem.implicitWidth
                implicitHeight: contentItem.implicitHeight
                Keys.onReturnPressed: toggle.clicked()
                Keys.onEnterPressed: toggle.clicked()
                onClicked: {
                    root.settings.setEnabled(root.moduleID, !root.moduleEnabled)
                    // The template changes by itself.
                    checked = Qt.binding(() => root.moduleEnabled)
                }

                contentItem: Item {
                    implicitWidth: drawing.width
                    implicitHeight: drawing.height

                    FormSwitch {
                        id: drawing

                        on: root.moduleEnabled
                        focusShown: toggle.visualFocus
                    }
                }
            }
        }

        ModuleModePicker {
            moduleID: root.moduleID
            settings: root.settings
            opacity: root.dragged ? 0 : 1
        }
    }
}
