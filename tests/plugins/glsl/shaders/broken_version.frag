#version 330
out vec4 color;

void main() {
    color = vec4(1.0);
}
