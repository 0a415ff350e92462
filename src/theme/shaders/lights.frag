#version 440
#extension GL_GOOGLE_include_directive : require
#include "card.glsl"

layout(location = 0) in vec2 point;
layout(location = 0) out vec4 fragColor;

#define blur parameters.x
#define intensity parameters.y
#define drift parameters.z
#define color firstColor

// What a disc lets through of what lies under it; `sharpness` is the slope of its edge.
float through(vec2 fromCentre, float radius, float opacity, float sharpness)
{
    float outwards = clamp((length(fromCentre) - radius) * sharpness + 0.5, 0.0, 1.0);
    float covered = 1.0 - outwards * outwards * (3.0 - 2.0 * outwards);
    return 1.0 - opacity * covered;
}

void main()
{
    float radius = 0.45 * max(area.x, area.y);
    // A Gaussian blur spreads an edge over about 1.9 times its radius, to both sides.
    float sharpness = 0.5 / max(1.88 * blur, 0.5 * pixel);
    float swing = 2.0 * drift - 1.0;
    float dark = through(point - area * vec2(0.16, 0.16) - swing * vec2(16.0, 12.0), 1.1 * radius, 1.0, sharpness)
        * through(point - area * vec2(0.95, 0.10) - swing * vec2(-14.0, 16.0), radius, 0.85, sharpness)
        * through(point - area * vec2(0.08, 0.96) - swing * vec2(16.0, -14.0), radius, 0.85, sharpness)
        * through(point - area * vec2(0.96, 0.95) - swing * vec2(-14.0, -12.0), 0.9 * radius, 0.75, sharpness);
    float light = (1.0 - dark) * intensity * opacity;
#ifndef INNER
    light *= cardCoverage(cardEdge(point, area, corner).distance, pixel);
#endif
    fragColor = color * light;
}
