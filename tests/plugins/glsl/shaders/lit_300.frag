#version 300 es
precision highp float;

struct Light {
    vec3 direction;
    vec3 color;
};

uniform Light lights[4];
uniform int light_count;
uniform sampler2D albedo;
uniform mediump sampler2DShadow shadow;

in vec3 world_normal;
in vec3 to_eye;
in vec2 uv;
layout(location = 0) out vec4 color;

vec3 shade(Light light, vec3 normal, vec3 eye) {
    float diffuse = max(dot(normal, -light.direction), 0.0);
    vec3 halfway = normalize(eye - light.direction);
    return light.color * (diffuse + pow(max(dot(normal, halfway), 0.0), 32.0));
}

void main() {
    vec3 normal = normalize(world_normal);
    vec3 eye = normalize(to_eye);
    vec3 sum = vec3(0.05);
    for (int i = 0; i < light_count; ++i)
        sum += shade(lights[i], normal, eye);
    float lit = texture(shadow, vec3(uv, 0.5));
    color = vec4(sum * lit, 1.0) * texture(albedo, uv);
}
