#version 440
#extension GL_GOOGLE_include_directive : require
#include "card.glsl"

layout(location = 0) in vec2 point;
layout(location = 0) out vec4 fragColor;

#define lowerOffset parameters.x
#define glowRadius parameters.y
#define lowerRadius parameters.z
#define glow firstColor
#define lower secondColor

// The blurred rectangle: each edge fades over the radius on both of its sides.
float shade(vec2 point, float radius)
{
    float slope = 0.5 / radius;
    vec4 inside = clamp(vec4(point, area - point) * slope + 0.5, 0.0, 1.0);
    inside = inside * inside * (3.0 - 2.0 * inside);
    return inside.x * inside.y * inside.z * inside.w;
}

void main()
{
    vec4 upper = glow * shade(point, glowRadius);
    vec4 below = lower * shade(point - vec2(0.0, lowerOffset), lowerRadius);
    // Cut out under the card, so that the glass stays clear.
    float outside = 1.0 - cardCoverage(cardEdge(point, area, corner).distance, pixel);
    fragColor = (upper + below * (1.0 - upper.a)) * (outside * opacity);
}
