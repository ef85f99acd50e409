#version 310 es
#extension GL_EXT_geometry_shader : require
layout(triangles) in;
layout(line_strip, max_vertices = 4) out;

layout(location = 0) in vec3 color[];
layout(location = 0) out vec3 line_color;

void emit_corner(int corner) {
    line_color = color[corner];
    gl_Position = gl_in[corner].gl_Position;
    EmitVertex();
}

void main() {
    for (int corner = 0; corner < 4; ++corner)
        emit_corner(corner % 3);
    EndPrimitive();
}
