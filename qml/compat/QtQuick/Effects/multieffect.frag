// SPDX-License-Identifier: GPL-3.0-or-later
#version 440

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float brightness;
    float saturation;
    float shadowScale;
    vec2 shadowCenter;
    vec2 shadowOffset;
    vec4 shadowColor;
    float shadowStrength;
};

layout(binding = 1) uniform sampler2D body;
layout(binding = 2) uniform sampler2D shadow;

const vec3 lumaWeights = vec3(0.299, 0.587, 0.114);

void main()
{
    vec4 color = texture(body, qt_TexCoord0);
    color.rgb += brightness * color.a;
    color.rgb = mix(vec3(dot(color.rgb, lumaWeights)), color.rgb, 1.0 + saturation);

    vec2 at = (qt_TexCoord0 - shadowOffset - shadowCenter) / shadowScale + shadowCenter;
    float shade = texture(shadow, at).a * shadowStrength;
    // Qt's effect darkens a semi-transparent shadow in this way. A plain overlay would be lighter,
    // and the light shadows would be invisible on the light panels of the windows.
    float seen = (1.0 - color.a) * shade;
    color.rgb = mix(color.rgb, shadowColor.rgb * shade, seen);
    color.a += seen;

    fragColor = color * qt_Opacity;
}
