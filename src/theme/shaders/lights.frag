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
    float margin;
    vec2 area;
    float blur;
    float intensity;
    float drift;
    vec4 color;
};

// What a disc lets through of what lies under it. A Gaussian blur spreads its edge over about 1.9 times the
// radius of the blur.
float through(vec2 point, float opacity, float diameter, vec2 from, vec2 to)
{
    float distance = length(point - mix(from, to, drift)) - 0.5 * diameter;
    float softness = max(1.88 * blur, 0.5 * pixel);
    return 1.0 - opacity * (1.0 - smoothstep(-softness, softness, distance));
}

void main()
{
    vec2 point = qt_TexCoord0 * (area + 2.0 * margin) - margin;
    float d = 0.9 * max(area.x, area.y);
    float dark = through(point, 1.0, 1.1 * d, area * vec2(0.16, 0.16) + vec2(-16.0, -12.0),
                         area * vec2(0.16, 0.16) + vec2(16.0, 12.0))
        * through(point, 0.85, d, area * vec2(0.95, 0.10) + vec2(14.0, -16.0),
                  area * vec2(0.95, 0.10) + vec2(-14.0, 16.0))
        * through(point, 0.85, d, area * vec2(0.08, 0.96) + vec2(-16.0, 14.0),
                  area * vec2(0.08, 0.96) + vec2(16.0, -14.0))
        * through(point, 0.75, 0.9 * d, area * vec2(0.96, 0.95) + vec2(14.0, 12.0),
                  area * vec2(0.96, 0.95) + vec2(-14.0, -12.0));
    float inside = cardCoverage(cardEdge(point, area, corner).distance, pixel);
    fragColor = color * ((1.0 - dark) * intensity * inside * qt_Opacity);
}
