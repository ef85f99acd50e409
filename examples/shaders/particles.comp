#version 310 es
// SPDX-License-Identifier: MIT
// Moves particles one step on: gravity, drag and a floor that they bounce off.
precision highp float;

layout(local_size_x = 64) in;

struct Particle {
    vec4 position; // w: seconds left to live
    vec4 velocity; // w: not used
};

layout(std430, binding = 0) buffer Particles {
    Particle particles[];
};

uniform float seconds;
uniform vec3 gravity;
uniform float drag;
uniform float bounce;

void main() {
    uint index = gl_GlobalInvocationID.x;
    if (index >= uint(particles.length()))
        return;

    Particle particle = particles[index];
    if (particle.position.w <= 0.0)
        return;

    vec3 velocity = (particle.velocity.xyz + gravity * seconds) * exp(-drag * seconds);
    vec3 position = particle.position.xyz + velocity * seconds;
    if (position.y < 0.0) {
        position.y = -position.y * bounce;
        velocity.y = abs(velocity.y) * bounce;
    }
    particles[index].position = vec4(position, particle.position.w - seconds);
    particles[index].velocity.xyz = velocity;
}
