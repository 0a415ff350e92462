import QtQuick

// A text of a card, sized by the card's text scale. Where it is part of what has a name of its own, assistive
// tools are to ignore it.
Text {
    id: root

    required property CardAppearance appearance
    // Size in points at text scale 1.
    property real size: Metrics.bodySize

    color: appearance.foreground
    font.pixelSize: Math.max(1, Math.round(size * appearance.textScale * 4) / 4)
    elide: Text.ElideRight
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
