import QtQuick

// A group of rows under a heading.
Column {
    id: root

    property string heading
    default property alias rows: column.data

    width: parent ? parent.width : implicitWidth
    spacing: 8
    Accessible.role: Accessible.Grouping
    Accessible.name: heading

    FormText {
        visible: root.heading !== ""
        x: 4
        width: root.width - 2 * x
        text: root.heading
        font.weight: Font.DemiBold
        font.pixelSize: FormStyle.headingSize
        Accessible.role: Accessible.Heading
    }

    Rectangle {
        width: root.width
        height: column.height
        radius: FormStyle.cardRadius
        color: FormStyle.card
        border.width: 1
        border.color: FormStyle.outline

        Column {
            id: column

            width: parent.width
        }
    }
}
