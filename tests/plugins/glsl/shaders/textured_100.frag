#version 100
#extension GL_OES_standard_derivatives : enable
precision mediump float;

uniform sampler2D albedo;
uniform vec4 tint;
varying vec2 uv;

void main() {
    vec4 color = texture2D(albedo, uv) * tint;
#ifdef GL_OES_standard_derivatives
    color.a *= 1.0 - smoothstep(0.0, 0.5, fwidth(uv.x));
#endif
    if (color.a < 0.01)
        discard;
    gl_FragColor = color;
}
