// Local memory, barriers and a helper.
#pragma OPENCL EXTENSION cl_khr_byte_addressable_store : enable

static float larger(float a, float b) {
    return a > b ? a : b;
}

kernel void reduce(global const float* values, local float* scratch, global float* result) {
    const size_t item = get_local_id(0);
    scratch[item] = values[get_global_id(0)];
    barrier(CLK_LOCAL_MEM_FENCE);
    for (size_t step = get_local_size(0) / 2; step > 0; step >>= 1) {
        if (item < step)
            scratch[item] = larger(scratch[item], scratch[item + step]);
        barrier(CLK_LOCAL_MEM_FENCE);
    }
    if (item == 0)
        result[get_group_id(0)] = scratch[0];
}

__kernel void fill(__global uchar* bytes, uchar value) {
    bytes[get_global_id(0)] = value;
}
