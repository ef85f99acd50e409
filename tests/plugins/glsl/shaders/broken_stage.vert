#version 310 es
#extension GL_OES_texture_3D : require
#extension GL_EXT_shadow_samplers : enable
#extension GL_QRX_shader_framebuffer_fetch : require

void main() {
#line 100
    discard;
    gl_Position = dFdx(vec4(1.0));
}
