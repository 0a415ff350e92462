import QtQuick
import QtQuick.Templates as T

// Scrolls a form that is taller than its window, and keeps the control that has the keyboard in sight. The
// form is as wide as is good to read and stands in the middle.
Flickable {
    id: root

    objectName: "form"

    default property alias form: column.data
    property real formWidth: FormStyle.formWidth
    readonly property Item focused: Window.activeFocusItem
    readonly property real end: Math.max(0, contentHeight - height)

    function scrollTo(y: real): void {
        contentY = Math.max(0, Math.min(y, end))
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(contentItem, 0, 0).y
        const margin = 52
        if (top - margin < contentY)
            scrollTo(top - margin)
        else if (top + item.height + margin > contentY + height)
            scrollTo(top + item.height + margin - height)
    }

    function holds(item: Item): bool {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor === column)
                return true
        }
        return false
    }

    contentHeight: column.height + 2 * column.y
    boundsBehavior: Flickable.StopAtBounds
    // With a mouse, a form scrolls by the wheel and the bar; pulling at it moves nothing.
    interactive: false
    clip: true
    onEndChanged: scrollTo(contentY)
    onFocusedChanged: {
        if (focused && holds(focused))
            reveal(focused)
    }

    T.ScrollBar.vertical: T.ScrollBar {
        id: bar

        parent: root
        x: root.width - width
        height: root.height
        implicitWidth: contentItem.implicitWidth + 2 * padding
        visible: root.end > 0
        padding: 3
        minimumSize: 0.1
        Accessible.ignored: true
        contentItem: Rectangle {
            implicitWidth: bar.hovered || bar.pressed ? 8 : 5
            radius: width / 2
            color: FormStyle.alpha(bar.pressed ? 0.5 : bar.hovered ? 0.4 : 0.28)
        }
    }

    Column {
        id: column

        x: (root.width - width) / 2
        y: 20
        width: Math.min(root.width - 2 * 24, root.formWidth)
        spacing: 22
    }

    WheelHandler {
        onWheel: event => root.scrollTo(root.contentY - (event.pixelDelta.y || event.angleDelta.y / 2))
    }

    DragHandler {
        property real start: 0

        target: null
        acceptedDevices: PointerDevice.TouchScreen
        onActiveChanged: start = root.contentY
        onTranslationChanged: root.scrollTo(start - translation.y)
    }
}
