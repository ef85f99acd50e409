#version 300 es
// SPDX-License-Identifier: MIT
// Places a lit, textured mesh.

layout(std140) uniform Camera {
    mat4 view;
    mat4 projection;
};
uniform mat4 model;
uniform mat3 normal_matrix;

layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 texture_coordinates;

out vec3 view_position;
out vec3 view_normal;
out vec2 uv;

void main() {
    vec4 placed = view * model * vec4(position, 1.0);
    view_position = placed.xyz;
    view_normal = normal_matrix * normal;
    uv = texture_coordinates;
    gl_Position = projection * placed;
}
