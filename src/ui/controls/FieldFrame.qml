import QtQuick

// What a field stands in: a rounded border that lights up while the keyboard is in it.
Rectangle {
    id: root

    required property CardAppearance appearance
    property bool active: false

    radius: 7
    color: appearance.alpha(0.08)
    border.width: 1
    border.color: active ? appearance.accent : appearance.rim
}
