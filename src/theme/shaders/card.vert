#version 440
#extension GL_GOOGLE_include_directive : require
#include "card.glsl"

layout(location = 0) in vec2 vertex;
layout(location = 0) out vec2 point;

void main()
{
    point = vertex;
    gl_Position = matrix * vec4(vertex, 0.0, 1.0);
}
