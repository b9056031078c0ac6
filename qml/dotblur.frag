// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

// One direction of a Gaussian blur: sigma 3.05 pixels, radius 8, sampled at every second pixel.
layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float strength;
    vec2 pixels; // two pixels in the direction of the blur
};

layout(binding = 1) uniform sampler2D source;

const float weights[5] = float[](0.26230, 0.21156, 0.11100, 0.03788, 0.00841);

void main()
{
    vec4 color = texture(source, qt_TexCoord0) * weights[0];
    for (int i = 1; i < 5; ++i) {
        color += texture(source, qt_TexCoord0 - float(i) * pixels) * weights[i];
        color += texture(source, qt_TexCoord0 + float(i) * pixels) * weights[i];
    }
    fragColor = color * min(strength, 1.0 / max(color.a, 0.001)) * qt_Opacity;
}
