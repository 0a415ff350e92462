import QtQuick

import Randblatt.Controls
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

    // Where the dragged row would come to stand.
    function gapY(): real {
        if (draggedRow === null || gap < 0)
            return 0
        if (gap <= draggedRow.index)
            return rows.itemAt(gap).y
        const above = rows.itemAt(gap - 1)
        return above.y + above.height - draggedRow.height
    }

    // What the row of that index does to make room for the dragged one.
    function shiftFor(index: int): real {
        if (draggedRow === null || index === draggedRow.index)
            return 0
        if (index < draggedRow.index)
            return index >= gap ? draggedRow.height : 0
        return index < gap ? -draggedRow.height : 0
    }

    function drop(row: ModuleRow, offset: real): void {
        if (row !== draggedRow)
            return
        const gap = gapFor(row, offset)
        draggedRow = null
        sliding.enabled = false
        move(row, gap > row.index ? gap - 1 : gap)
        list.forceLayout()
        sliding.enabled = true
    }

    function cancelDrag(): void {
        const row = draggedRow
        draggedRow = null
        row.cancelDrag()
    }

    function move(row: ModuleRow, target: int): void {
        if (target < 0 || target >= rows.count)
            return
        const title = row.title
        modules.move(row.index, target)
        Voice.say(root, title + ": Platz " + (target + 1) + " von " + rows.count)
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

            // The place into which the dragged row would fall.
            Rectangle {
                objectName: "dropMark"
                visible: root.draggedRow !== null
                x: 6
                y: root.gapY() + 3
                width: parent.width - 2 * x
                height: visible ? root.draggedRow.height - 6 : 0
                radius: 8
                color: Qt.rgba(border.color.r, border.color.g, border.color.b, 0.1)
                border.width: 1
                border.color: FormStyle.accent
            }

            Column {
                id: list

                width: parent.width
                move: Transition {
                    id: sliding

                    NumberAnimation {
                        property: "y"
                        duration: Metrics.duration(160)
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
                        makesRoom: root.draggedRow !== null
                        shift: root.shiftFor(index)
                        onDraggedChanged: {
                            if (dragged)
                                root.draggedRow = row
                        }
                        onDropped: offset => root.drop(row, offset)
                        onMoveRequested: by => root.move(row, index + by)
                    }
                }
            }
        }
    }

    Shortcut {
        sequence: "Escape"
        enabled: root.draggedRow !== null
        onActivated: root.cancelDrag()
    }

    // A drag near an edge scrolls what lies beyond it into sight.
    Timer {
        running: root.draggedRow !== null
        interval: 16
        repeat: true
        onTriggered: root.scrollAlong()
    }
}
