import QtQuick

import Randblatt.Controls

// A text of a form.
Text {
    id: root

    color: FormStyle.text
    font.pixelSize: Metrics.bodySize
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: root.lineCount > 1 ? 1.1 : 1
}
