#version 320 es
// SPDX-License-Identifier: MIT
// Three mistakes that are made every day; see what a compiler says to them.
precision mediump float;

uniform sampler2D albedo_map;

in vec2 uv;

layout(location = 0) out vec4 colour;

void main() {
    vec3 albedo = texture(albedo_map, uv); // four components into three
    float fade = 1 - uv.y;                 // an integer where a float belongs
    colour = vec4(albedo * fade, alhpa);   // a name that was never declared
}
