#version 300 es
precision mediump float;
in vec2 uv;
out vec4 color;

void main() {
    vec3 shade = texture(albedo, uv);
    color = vec4(shade, 1.0)
    missing();
}
