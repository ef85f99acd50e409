attribute vec3 position;
attribute vec2 coordinate;
uniform mat4 model_view_projection;
varying vec2 uv;

void main() {
    uv = coordinate;
    gl_Position = model_view_projection * vec4(position, 1.0);
}
