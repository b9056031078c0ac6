// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

// Draws the dots over their glow.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
};

layout(binding = 1) uniform sampler2D dots;
layout(binding = 2) uniform sampler2D glow;

void main()
{
    vec4 dot = texture(dots, qt_TexCoord0);
    fragColor = (dot + texture(glow, qt_TexCoord0) * (1.0 - dot.a)) * qt_Opacity;
}
