import QtQuick

// Parts a row from the one above it.
Rectangle {
    x: FormStyle.rowPadding
    width: parent.width - 2 * x
    height: 1
    color: FormStyle.hairline
}
