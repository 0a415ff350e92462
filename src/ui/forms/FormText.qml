import QtQuick

import Randblatt.Controls

// A text of a form.
Text {
    color: FormStyle.text
    font.pixelSize: Metrics.bodySize
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    lineHeight: 1.1
}
