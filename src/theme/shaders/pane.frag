#version 440
#extension GL_GOOGLE_include_directive : require
#include "card.glsl"

layout(location = 0) in vec2 point;
layout(location = 0) out vec4 fragColor;

#define sheen parameters.x
#define rim parameters.y
#define color firstColor

const vec2 lightDirection = vec2(-0.55, -0.835);
const float rimDepth = 14.0;

// Light caught along the rim: a soft inner glow and a narrow line, on the side of the light; a faint one where
// it leaves the pane.
float rimLight(CardEdge edge)
{
    float depth = max(-edge.distance, 0.0);
    float facing = dot(edge.normal, lightDirection);
    float lit = facing > 0.0 ? facing : -0.35 * facing;
    float glow = clamp(1.0 - depth / min(rimDepth, edge.reach), 0.0, 1.0);
    float line = clamp(1.0 - depth / 2.5, 0.0, 1.0);
    return lit * (0.13 * glow * glow + 0.16 * line * line);
}

void main()
{
    CardEdge edge = cardEdge(point, area, corner);
    float light = sheen * clamp(1.0 - 2.0 * point.y / area.y, 0.0, 1.0) + rim * rimLight(edge);
    fragColor = (color * (1.0 - light) + light) * (cardCoverage(edge.distance, pixel) * opacity);
}
