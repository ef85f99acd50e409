#version 300 es
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in vec2 coordinate;

uniform Camera {
    mat4 view_projection;
    vec3 eye;
};
uniform mat4 model;

out vec3 world_normal;
out vec3 to_eye;
out vec2 uv;

void main() {
    vec4 world = model * vec4(position, 1.0);
    world_normal = mat3(model) * normal;
    to_eye = eye - world.xyz;
    uv = coordinate;
    gl_Position = view_projection * world;
}
