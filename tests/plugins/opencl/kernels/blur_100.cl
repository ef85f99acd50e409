// Images and samplers.
constant sampler_t nearest = CLK_NORMALIZED_COORDS_FALSE | CLK_ADDRESS_CLAMP_TO_EDGE | CLK_FILTER_NEAREST;

kernel void blur(read_only image2d_t input, write_only image2d_t output, int radius) {
    const int2 here = (int2)(get_global_id(0), get_global_id(1));
    float4 sum = (float4)(0.0f);
    for (int x = -radius; x <= radius; ++x)
        sum += read_imagef(input, nearest, here + (int2)(x, 0));
    write_imagef(output, here, sum / (float)(2 * radius + 1));
}
