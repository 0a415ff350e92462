import QtQuick
import QtQuick.Templates as T

// Parts the entries of a menu.
T.MenuSeparator {
    width: ListView.view ? ListView.view.width : implicitWidth
    implicitHeight: 9

    contentItem: Item {
        Rectangle {
            y: 4
            x: 8
            width: parent.width - 16
            height: 1
            color: Qt.rgba(1, 1, 1, 0.15)
        }
    }
}
