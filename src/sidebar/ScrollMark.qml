import QtQuick

import Randblatt.Controls

// Shows where a flickable is while it scrolls.
Rectangle {
    id: root

    required property Flickable flickable

    y: flickable.y + flickable.visibleArea.yPosition * flickable.height + 2
    width: 4
    height: Math.max(24, flickable.visibleArea.heightRatio * flickable.height - 4)
    radius: 2
    color: Qt.rgba(1, 1, 1, 0.55)
    visible: opacity > 0
    opacity: flickable.interactive && flickable.moving ? 1 : 0

    Behavior on opacity {
        NumberAnimation {
            duration: Metrics.duration(200)
        }
    }
}
