#version 320 es
layout(location = 0) in vec3 position;

layout(std430, binding = 0) readonly buffer Instances {
    mat4 transforms[];
};
layout(std140, binding = 1) uniform Camera {
    mat4 view_projection;
};

layout(location = 0) flat out int instance;

void main() {
    instance = gl_InstanceID;
    gl_Position = view_projection * transforms[gl_InstanceID] * vec4(position, 1.0);
}
