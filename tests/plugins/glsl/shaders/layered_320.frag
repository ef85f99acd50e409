#version 320 es
precision highp float;

layout(binding = 0) uniform highp sampler2DArray layers;
layout(binding = 1, r32f) uniform highp readonly image2D mask;
layout(location = 3) uniform ivec2 offset;

layout(location = 0) flat in int instance;
layout(location = 0) out vec4 color;

void main() {
    ivec2 pixel = ivec2(gl_FragCoord.xy) + offset;
    vec4 layer = texelFetch(layers, ivec3(pixel, instance), 0);
    color = layer * imageLoad(mask, pixel).r;
}
