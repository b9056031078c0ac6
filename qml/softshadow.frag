// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 offset;
    vec4 color;
    float strength;
};

layout(binding = 1) uniform sampler2D shade;

void main()
{
    float seen = min(texture(shade, qt_TexCoord0 - offset).a * strength, 1.0);
    // Darker where it is half transparent: a light shadow would vanish on a light panel.
    fragColor = vec4(color.rgb * seen, 1.0) * seen * qt_Opacity;
}
