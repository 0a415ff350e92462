import QtQuick

import Randblatt.Calendar
import Randblatt.Controls

// The day above its events.
Item {
    id: root

    required property CardAppearance appearance
    // The day in ISO 8601 form.
    required property string section

    implicitHeight: label.implicitHeight + 10 + 2
    Accessible.role: Accessible.Heading
    Accessible.name: label.text

    CardText {
        id: label

        objectName: "dayHeading"
        x: Metrics.cardPadding
        width: parent.width - 2 * x
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2
        appearance: root.appearance
        size: Metrics.calloutSize
        color: root.appearance.secondary
        font.weight: Font.DemiBold
        text: CalendarFormat.dayHeading(root.section)
        Accessible.ignored: true
    }
}
