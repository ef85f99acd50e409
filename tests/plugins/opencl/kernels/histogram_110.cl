// Atomics, vectors of three, clamp to a range, asynchronous copies.
kernel void histogram(global const uchar* pixels, global volatile int* bins, int count) {
    local int counts[256];
    for (size_t i = get_local_id(0); i < 256; i += get_local_size(0))
        counts[i] = 0;
    barrier(CLK_LOCAL_MEM_FENCE);
    const int here = (int)get_global_id(0);
    if (here < count)
        atomic_inc(&counts[pixels[here]]);
    barrier(CLK_LOCAL_MEM_FENCE);
    for (size_t i = get_local_id(0); i < 256; i += get_local_size(0))
        atomic_add(&bins[i], counts[i]);
}

kernel void normals(global const float* input, global float* output, local float* tile) {
    event_t done = async_work_group_strided_copy(tile, input, 48, 2, 0);
    wait_group_events(1, &done);
    const size_t i = get_global_id(0);
    const float3 v = vload3(i, tile);
    vstore3(clamp(normalize(v), -1.0f, 1.0f), i, output);
}
