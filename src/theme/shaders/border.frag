#version 440
#extension GL_GOOGLE_include_directive : require
#include "card.glsl"

layout(location = 0) in vec2 point;
layout(location = 0) out vec4 fragColor;

#define topColor firstColor
#define middleColor secondColor
#define bottomColor thirdColor

void main()
{
    float distance = cardEdge(point, area, corner).distance;
    // One point wide, wholly inside the shape.
    float stroke = cardCoverage(distance, pixel) * (1.0 - cardCoverage(distance + 1.0, pixel));
    float place = 2.0 * point.y / area.y;
    vec4 paint = mix(mix(topColor, middleColor, clamp(place, 0.0, 1.0)), bottomColor, clamp(place - 1.0, 0.0, 1.0));
    fragColor = paint * (stroke * opacity);
}
