import QtQuick

import Randblatt.Forms
import Randblatt.Settings
import Randblatt.SettingsUI

// The tab that enables, sizes and sorts the modules.
FormScroll {
    id: root

    required property AppSettings settings
    required property ModuleListModel modules
    property ModuleRow draggedRow: null
    // The gap between rows into which the dragged row would fall: 0 is above the first one.
    readonly property int gap: draggedRow ? gapFor(draggedRow, draggedRow.offset) : -1

    function gapFor(row: ModuleRow, offset: real): int {
        const centre = row.y + offset + row.lineHeight / 2
        let above = 0
        for (let i = 0; i < rows.count; ++i) {
            const other = rows.itemAt(i)
            above += other !== row && other.y + other.height / 2 < centre ? 1 : 0
        }
        return above < row.index ? above : above === row.index ? row.index : above + 1
    }

    function gapY(gap: int): real {
        const row = rows.itemAt(Math.min(gap, rows.count - 1))
        return gap < rows.count ? row.y : row.y + row.height
    }

    function drop(row: ModuleRow, offset: real): void {
        const gap = gapFor(row, offset)
        modules.move(row.index, gap > row.index ? gap - 1 : gap)
    }

    function scrollAlong(): void {
        const top = draggedRow.mapToItem(root, 0, 0).y
        const speed = 6
        if (top < 0)
            scrollTo(contentY - speed)
        else if (top + draggedRow.lineHeight > height)
            scrollTo(contentY + speed)
    }

    FormSection {
        id: section

        FormText {
            x: FormStyle.rowPadding
            width: section.width - 2 * x
            topPadding: 14
            bottomPadding: 14
            text: "Module aktivieren, Höhe einstellen und per Ziehen sortieren:"
            color: FormStyle.secondary
        }

        Item {
            width: section.width
            height: list.height
            Accessible.role: Accessible.List
            Accessible.name: "Module"

            Column {
                id: list

                width: parent.width
                move: Transition {
                    NumberAnimation {
                        property: "y"
                        duration: 160
                        easing.type: Easing.OutCubic
                    }
                }

                Repeater {
                    id: rows

                    model: root.modules

                    ModuleRow {
                        id: row

                        objectName: "row-" + moduleID
                        settings: root.settings
                        onDraggedChanged: root.draggedRow = dragged ? row : null
                        onDropped: offset => root.drop(row, offset)
                        onMoveRequested: by => root.modules.move(index, index + by)
                    }
                }
            }

            Rectangle {
                id: dropMark

                objectName: "dropMark"
                visible: root.gap >= 0 && root.gap !== root.draggedRow.index && root.gap !== root.draggedRow.index + 1
                x: FormStyle.rowPadding
                y: visible ? root.gapY(root.gap) - 1 : 0
                z: 2
                width: parent.width - 2 * x
                height: 3
                radius: 1.5
                color: FormStyle.accent

                Rectangle {
                    x: -width / 2
                    anchors.verticalCenter: parent.verticalCenter
                    width: 9
                    height: 9
                    radius: width / 2
                    color: FormStyle.accent
                }
            }
        }
    }

    // A drag near an edge scrolls what lies beyond it into sight.
    Timer {
        running: root.draggedRow !== null
        interval: 16
        repeat: true
        onTriggered: root.scrollAlong()
    }
}
