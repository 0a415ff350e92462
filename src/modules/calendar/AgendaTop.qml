import QtQuick

import Randblatt.Controls

// What stands above the events: the heading with the form's switch, the form, and what the service has to say.
Item {
    id: root

    required property CardAppearance appearance
    required property bool authorized
    required property string statusMessage
    // Why it is so.
    required property string reason
    required property bool isOutdated
    required property bool loading
    required property bool showAdd

    readonly property string message: reason !== "" ? reason + " " + statusMessage : statusMessage

    default property alias form: formFrame.data
    property real formHeight: 0

    signal formToggled
    signal reloadWanted

    implicitHeight: column.height

    Column {
        id: column

        width: parent.width
        // Room for the focus ring of what stands in the first row.
        topPadding: 3

        Item {
            x: Metrics.cardPadding
            width: parent.width - 2 * x
            height: Math.max(title.implicitHeight, toggle.height - 6)

            CardText {
                id: title

                anchors.verticalCenter: parent.verticalCenter
                appearance: root.appearance
                text: "Termine"
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }

            PlainButton {
                id: toggle

                objectName: "formToggle"
                anchors.right: parent.right
                anchors.rightMargin: -reach
                anchors.verticalCenter: parent.verticalCenter
                symbol: root.showAdd ? "xmark" : "plus"
                symbolSize: 14 * root.appearance.textScale
                color: root.appearance.foreground
                accent: root.appearance.accent
                text: root.showAdd ? "Formular schließen" : "Neuer Termin"
                onClicked: root.formToggled()
            }
        }

        // Opens and closes like a drawer.
        Item {
            id: formFrame

            property real progress: root.showAdd ? 1 : 0

            x: Metrics.cardPadding
            width: parent.width - 2 * x
            height: progress * (root.formHeight + 2 * Metrics.gap)
            opacity: progress
            visible: root.showAdd || progress > 0
            enabled: root.showAdd
            clip: progress < 1

            Behavior on progress {
                NumberAnimation {
                    duration: Metrics.duration(250)
                    easing.type: Easing.InOutQuad
                }
            }
        }

        AccessPrompt {
            objectName: "accessPrompt"
            visible: !root.authorized
            width: parent.width
            appearance: root.appearance
            message: root.message
            loading: root.loading
            onAccessWanted: root.reloadWanted()
        }

        Item {
            visible: root.authorized && root.statusMessage !== ""
            x: Metrics.cardPadding
            width: parent.width - 2 * x
            height: Math.max(status.height, reloadButton.visible ? reloadButton.height : 0)

            CardText {
                id: status

                objectName: "statusMessage"
                anchors.left: parent.left
                anchors.right: reloadButton.visible ? reloadButton.left : parent.right
                anchors.rightMargin: reloadButton.visible ? Metrics.tightGap : 0
                anchors.verticalCenter: parent.verticalCenter
                topPadding: 6
                bottomPadding: 2
                appearance: root.appearance
                size: Metrics.calloutSize
                color: root.appearance.secondary
                wrapMode: Text.WordWrap
                text: root.message
                Accessible.role: root.isOutdated ? Accessible.AlertMessage : Accessible.StaticText
                Accessible.name: text
            }

            PlainButton {
                id: reloadButton

                objectName: "reloadButton"
                visible: root.isOutdated
                anchors.right: parent.right
                anchors.rightMargin: -reach
                anchors.verticalCenter: parent.verticalCenter
                text: "Neu laden"
                textSize: Metrics.calloutSize * root.appearance.textScale
                font.weight: Font.DemiBold
                color: root.appearance.foreground
                accent: root.appearance.accent
                showsText: !root.loading
                onClicked: root.reloadWanted()

                BusyMark {
                    anchors.centerIn: parent
                    appearance: root.appearance
                    running: root.loading && root.isOutdated && root.authorized
                }
            }
        }
    }
}
