// SPDX-License-Identifier: MIT
// One direction of a Gaussian blur; a work-group shares the pixels of its row.

#define RADIUS 4
#define ROW 64

constant float weights[RADIUS + 1] = {0.227f, 0.194f, 0.121f, 0.054f, 0.016f};

kernel void blur(global const float4* source, global float4* blurred, int width) {
    local float4 row[ROW + 2 * RADIUS];
    const int x = get_global_id(0);
    const int here = get_local_id(0);
    const global float4* line = source + get_global_id(1) * width;

    row[here + RADIUS] = line[min(x, width - 1)];
    if (here < RADIUS) {
        row[here] = line[clamp(x - RADIUS, 0, width - 1)];
        row[here + ROW + RADIUS] = line[clamp(x + ROW, 0, width - 1)];
    }
    barrier(CLK_LOCAL_MEM_FENCE);

    float4 sum = weights[0] * row[here + RADIUS];
    for (int i = 1; i <= RADIUS; ++i)
        sum += weights[i] * (row[here + RADIUS - i] + row[here + RADIUS + i]);
    if (x < width)
        blurred[get_global_id(1) * width + x] = sum;
}
