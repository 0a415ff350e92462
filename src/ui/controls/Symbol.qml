import QtQuick

// One of the application's symbols, tinted.
Image {
    id: root

    required property string name
    property color color: "white"
    // Edge length in points.
    property real size: 16

    function tint(): string {
        return color.toString().length === 7 ? "ff" + color.toString().slice(1) : color.toString().slice(1)
    }

    width: size
    height: size
    sourceSize.width: Math.ceil(size * Screen.devicePixelRatio)
    sourceSize.height: Math.ceil(size * Screen.devicePixelRatio)
    source: name === "" ? "" : "image://symbol/" + name + "/" + tint()
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
