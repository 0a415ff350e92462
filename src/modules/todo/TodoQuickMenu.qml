import QtQuick

import Randblatt.Controls
import Randblatt.Settings

// The choice between list and board.
Column {
    id: root

    required property AppSettings settings

    spacing: Metrics.tightGap

    QuickMenuRow {
        objectName: "listChoice"
        width: root.width
        symbol: "list.bullet"
        text: "Liste"
        chosen: root.settings.todoViewMode === "list"
        onClicked: root.settings.todoViewMode = "list"
    }

    QuickMenuRow {
        objectName: "kanbanChoice"
        width: root.width
        symbol: "rectangle.split.3x1"
        text: "Kanban-Tafel"
        chosen: root.settings.todoViewMode === "kanban"
        onClicked: root.settings.todoViewMode = "kanban"
    }
}
