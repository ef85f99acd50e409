#version 310 es
layout(local_size_x = 64) in;

struct Particle {
    vec4 position;
    vec4 velocity;
};

layout(std430, binding = 0) buffer Particles {
    Particle particles[];
};
layout(std430, binding = 1) buffer Alive {
    uint alive;
};
uniform float step_length;
shared uint alive_here;

void main() {
    uint index = gl_GlobalInvocationID.x;
    if (gl_LocalInvocationIndex == 0u)
        alive_here = 0u;
    barrier();
    Particle particle = particles[index];
    particle.velocity.y -= 9.81 * step_length;
    particle.position += particle.velocity * step_length;
    particles[index] = particle;
    if (particle.position.y > 0.0)
        atomicAdd(alive_here, 1u);
    barrier();
    if (gl_LocalInvocationIndex == 0u)
        atomicAdd(alive, alive_here);
}
