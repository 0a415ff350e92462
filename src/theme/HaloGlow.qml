import QtQuick

// The glow of a content that lies in its middle, `reach` points inside each edge. Both the picture of the
// content and the glow are kept as textures of half the resolution, which follow only changes of the content.
Item {
    id: root

    required property Item content
    required property color color
    // 0…1
    required property real strength
    required property real reach

    readonly property size texels: Qt.size(Math.max(1, Math.ceil(width / 2)), Math.max(1, Math.ceil(height / 2)))

    ShaderEffectSource {
        id: picture

        anchors.fill: parent
        visible: false
        sourceItem: root.content
        sourceRect: Qt.rect(-root.reach, -root.reach, root.width, root.height)
        textureSize.width: root.texels.width
        textureSize.height: root.texels.height
    }

    ShaderEffect {
        id: glow

        readonly property ShaderEffectSource source: picture
        readonly property size texel: Qt.size(1 / root.texels.width, 1 / root.texels.height)
        readonly property color color: root.color
        readonly property real strength: root.strength

        anchors.fill: parent
        fragmentShader: Qt.resolvedUrl("shaders/halo.frag.qsb")
    }

    ShaderEffectSource {
        anchors.fill: parent
        sourceItem: glow
        hideSource: true
        textureSize.width: root.texels.width
        textureSize.height: root.texels.height
    }
}
