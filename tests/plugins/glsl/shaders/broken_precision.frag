varying vec2 uv;

void main() {
    float brightness = uv.x;
    gl_FragColor = brightness * vec3(1.0);
}
