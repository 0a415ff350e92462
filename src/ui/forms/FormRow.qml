import QtQuick

// One row of a section: a label at the left and, from `controlX` to the right edge, whatever is put into it.
Item {
    id: root

    property string text
    property string description
    // Aligns the label with the first line of a control that is taller than one.
    property bool labelAtTop: false
    property real labelWidth: FormStyle.labelWidth
    readonly property real controlX: FormStyle.rowPadding + labelWidth
    default property alias control: slot.data

    width: parent ? parent.width : implicitWidth
    implicitHeight: Math.max(FormStyle.rowHeight, labels.implicitHeight + 2 * 12, slot.childrenRect.height + 2 * 12)

    FormHairline {
        visible: root.y > 0
    }

    Column {
        id: labels

        x: FormStyle.rowPadding
        y: root.labelAtTop ? 12 : (root.height - height) / 2
        width: slot.children.length > 0 ? root.labelWidth - 12 : root.width - 2 * x
        spacing: 2

        FormText {
            width: parent.width
            text: root.text
        }

        FormText {
            visible: text !== ""
            width: parent.width
            text: root.description
            color: FormStyle.secondary
            font.pixelSize: FormStyle.captionSize
        }
    }

    Item {
        id: slot

        anchors.left: parent.left
        anchors.leftMargin: root.controlX
        anchors.right: parent.right
        anchors.rightMargin: FormStyle.rowPadding
        anchors.verticalCenter: parent.verticalCenter
        height: childrenRect.height
    }
}
