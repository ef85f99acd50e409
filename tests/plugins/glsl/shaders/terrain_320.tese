#version 320 es
layout(quads, fractional_odd_spacing, ccw) in;

uniform mat4 view_projection;
uniform sampler2D heights;

void main() {
    vec4 near = mix(gl_in[0].gl_Position, gl_in[1].gl_Position, gl_TessCoord.x);
    vec4 far = mix(gl_in[3].gl_Position, gl_in[2].gl_Position, gl_TessCoord.x);
    vec4 position = mix(near, far, gl_TessCoord.y);
    position.y += textureLod(heights, gl_TessCoord.xy, 0.0).r;
    gl_Position = view_projection * position;
}
