#version 440
#extension GL_GOOGLE_include_directive : require
#include "shape.glsl"

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float corner;
    float pixel;
    vec2 area;
    vec4 piece;
    vec4 topColor;
    vec4 middleColor;
    vec4 bottomColor;
};

void main()
{
    vec2 point = piece.xy + qt_TexCoord0 * piece.zw;
    float distance = cardEdge(point, area, corner).distance;
    // One point wide, wholly inside the shape.
    float stroke = cardCoverage(distance, pixel) * (1.0 - cardCoverage(distance + 1.0, pixel));
    float place = 2.0 * point.y / area.y;
    vec4 paint = mix(mix(topColor, middleColor, clamp(place, 0.0, 1.0)), bottomColor, clamp(place - 1.0, 0.0, 1.0));
    fragColor = paint * (stroke * qt_Opacity);
}
