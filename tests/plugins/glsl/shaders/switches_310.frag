#version 310 es
// Uniforms of type bool, on their own, in vectors, arrays and structures.
precision mediump float;

struct Light {
    bool on;
    bvec2 shadows;
    vec4 colour;
};

uniform bool lit;
uniform bvec3 channels;
uniform bool layers[4];
uniform Light light;
uniform Light lights[2];
uniform int last;

layout(location = 0) out vec4 colour;

bool any_layer(bool values[4]) {
    return values[0] || values[1] || values[2] || values[3];
}

vec4 shine(Light source) {
    return source.on && all(source.shadows) ? source.colour : vec4(0.0);
}

void main() {
    Light copy = light;
    colour = any_layer(layers) && layers[last] ? shine(light) : vec4(float(lit));
    if (lit && copy.on && lights[1] != light)
        colour += shine(lights[last]);
    colour.rgb *= vec3(channels);
    if (channels.zyx == bvec3(true))
        colour.a = lights[last].shadows.y ? 1.0 : 0.5;
}
