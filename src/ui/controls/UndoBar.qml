import QtQuick

// Says what was just deleted or overwritten, and offers the way back.
Item {
    id: root

    required property CardAppearance appearance
    // What happened, as in "Gelöscht".
    required property string message
    // For a line among others.
    property bool isCompact: false

    signal undone
    // The pointer or the keyboard is on the button: the offer must not end now.
    signal held(hold: bool)

    implicitHeight: label.implicitHeight + 2 * (isCompact ? 4 : 7)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: message

    Announcement {
        source: root
        text: root.message
    }

    Rectangle {
        anchors.fill: parent
        radius: 9
        color: root.appearance.alpha(0.12)
        border.width: 1
        border.color: root.appearance.rim
    }

    CardText {
        id: label

        objectName: "undoMessage"
        anchors.left: parent.left
        anchors.leftMargin: Metrics.gap
        anchors.right: button.left
        anchors.rightMargin: Metrics.tightGap
        anchors.verticalCenter: parent.verticalCenter
        appearance: root.appearance
        size: Metrics.calloutSize
        text: root.message
        Accessible.ignored: true
    }

    PlainButton {
        id: button

        readonly property bool isHeld: hovered || activeFocus

        objectName: "undoButton"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.gap - reach
        anchors.verticalCenter: parent.verticalCenter
        text: "Rückgängig"
        textSize: Metrics.calloutSize * root.appearance.textScale
        font.weight: Font.DemiBold
        color: root.appearance.foreground
        accent: root.appearance.accent
        onIsHeldChanged: root.held(isHeld)
        onClicked: root.undone()
    }
}
