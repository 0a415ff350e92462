import QtQuick

// The field in which one searches a card; it is there only meanwhile, and takes no room otherwise.
FieldFrame {
    id: root

    property alias text: field.text
    // How many were found.
    property int found: 0
    readonly property bool isOpen: visible

    // The search is over.
    signal closed
    // Return: on to what was found.
    signal accepted

    function open(): void {
        visible = true
        field.forceActiveFocus(Qt.ShortcutFocusReason)
        field.selectAll()
    }

    function close(): void {
        if (!visible)
            return
        visible = false
        field.text = ""
        closed()
    }

    implicitHeight: visible ? Math.max(30, field.implicitHeight + 2 * 7) : 0
    visible: false
    active: field.activeFocus
    Keys.onEscapePressed: close()

    Symbol {
        id: mark

        x: 8
        anchors.verticalCenter: parent.verticalCenter
        name: "magnifyingglass"
        size: 13 * root.appearance.textScale
        color: root.appearance.secondary
    }

    PlainTextField {
        id: field

        objectName: "searchField"
        anchors.left: mark.right
        anchors.leftMargin: Metrics.tightGap
        anchors.right: nothing.visible ? nothing.left : clear.left
        height: parent.height
        appearance: root.appearance
        placeholderText: "Suchen"
        Accessible.description: text === "" ? "" : root.found + " gefunden"
        onAccepted: root.accepted()
    }

    CardText {
        id: nothing

        objectName: "nothingFound"
        anchors.right: clear.left
        anchors.verticalCenter: parent.verticalCenter
        visible: field.text.trim() !== "" && root.found === 0
        appearance: root.appearance
        size: Metrics.captionSize
        color: root.appearance.secondary
        text: "Nichts gefunden"
    }

    PlainButton {
        id: clear

        objectName: "closeSearch"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: "Suche schließen"
        symbol: "xmark.circle.fill"
        showsText: false
        symbolSize: 13 * root.appearance.textScale
        color: root.appearance.secondary
        accent: root.appearance.accent
        onClicked: root.close()
    }
}
