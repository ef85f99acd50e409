float4 shade(float4 color);
kernel void broken(global float4* output) {
    float4 color = missing;
    output[0] = color
    output[1] = shde(color);
    int unused;
    output->w = dot(color, 1);
}
