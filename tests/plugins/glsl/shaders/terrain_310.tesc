#version 310 es
#extension GL_EXT_tessellation_shader : require
layout(vertices = 4) out;

uniform vec3 eye;

float level(vec4 corner) {
    return clamp(64.0 / distance(corner.xyz, eye), 1.0, 16.0);
}

void main() {
    gl_out[gl_InvocationID].gl_Position = gl_in[gl_InvocationID].gl_Position;
    if (gl_InvocationID == 0) {
        for (int i = 0; i < 4; ++i)
            gl_TessLevelOuter[i] = level(gl_in[i].gl_Position);
        gl_TessLevelInner[0] = gl_TessLevelOuter[1];
        gl_TessLevelInner[1] = gl_TessLevelOuter[0];
    }
}
