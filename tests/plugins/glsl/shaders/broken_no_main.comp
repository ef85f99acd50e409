#version 310 es
layout(local_size_x = 8) in;
