import QtQuick

// A text of a form. Where it is part of what has a name of its own, assistive tools are to ignore it.
Text {
    id: root

    color: FormStyle.text
    font.pixelSize: FormStyle.bodySize
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: root.lineCount > 1 ? 1.1 : 1

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
