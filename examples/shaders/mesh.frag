#version 300 es
// SPDX-License-Identifier: MIT
// Lights a textured mesh with a few point lights, after Blinn and Phong.
precision highp float;

#ifndef LIGHT_COUNT
#define LIGHT_COUNT 4
#endif

struct Light {
    vec3 position;
    float radius;
    vec3 colour;
};

uniform sampler2D albedo_map;
uniform Light lights[LIGHT_COUNT];
uniform vec3 ambient;
uniform float shininess;

in vec3 view_position;
in vec3 view_normal;
in vec2 uv;

layout(location = 0) out vec4 colour;

vec3 lit_by(Light light, vec3 normal, vec3 to_eye, vec3 albedo) {
    vec3 to_light = light.position - view_position;
    float distance_squared = dot(to_light, to_light);
    to_light = normalize(to_light);

    float fall_off = clamp(1.0 - distance_squared / (light.radius * light.radius), 0.0, 1.0);
    float diffuse = max(dot(normal, to_light), 0.0);
    float specular = pow(max(dot(normal, normalize(to_light + to_eye)), 0.0), shininess);
    return fall_off * light.colour * (diffuse * albedo + specular * step(0.0001, diffuse));
}

void main() {
    vec4 albedo = texture(albedo_map, uv);
    if (albedo.a < 0.5)
        discard;

    vec3 normal = normalize(view_normal);
    vec3 to_eye = normalize(-view_position);
    vec3 sum = ambient * albedo.rgb;
    for (int i = 0; i < LIGHT_COUNT; ++i)
        sum += lit_by(lights[i], normal, to_eye, albedo.rgb);
    colour = vec4(sum, albedo.a);
}
