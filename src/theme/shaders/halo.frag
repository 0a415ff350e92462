#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float strength;
    vec2 texel;
    vec4 color;
};
layout(binding = 1) uniform sampler2D source;

float content(vec2 offset)
{
    return texture(source, qt_TexCoord0 + offset * texel).a;
}

float ring(float radius)
{
    float diagonal = 0.7071 * radius;
    return 0.125 * (content(vec2(radius, 0.0)) + content(vec2(-radius, 0.0)) + content(vec2(0.0, radius))
                    + content(vec2(0.0, -radius)) + content(vec2(diagonal, diagonal))
                    + content(vec2(-diagonal, diagonal)) + content(vec2(diagonal, -diagonal))
                    + content(vec2(-diagonal, -diagonal)));
}

// Both shadows of the content's opacity in one pass. A texel is two points wide, so that three taps along a
// radius carry a Gaussian of 2.5 points.
void main()
{
    float centre = content(vec2(0.0));
    float near = ring(0.6);
    float middle = ring(1.5);
    float far = ring(2.7);
    float tight = 0.45 * centre + 0.45 * near + 0.1 * middle;
    float wide = 0.12 * centre + 0.28 * near + 0.37 * middle + 0.23 * far;
    float shadow = 1.0 - (1.0 - strength * tight) * (1.0 - 0.7 * strength * wide);
    fragColor = color * (shadow * qt_Opacity);
}
