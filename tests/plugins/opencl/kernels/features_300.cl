// Features that a device may lack, and macros that tell of them.
#if __OPENCL_C_VERSION__ != 300
#error not OpenCL C 3.0
#endif
#if !defined(__opencl_c_generic_address_space) || !defined(__opencl_c_read_write_images)
#error a feature is missing
#endif

kernel void features(read_write image2d_t image, global ulong* counts, global int* values) {
    const int2 here = (int2)(get_global_id(0), get_global_id(1));
    const float4 color = read_imagef(image, here);
    write_imagef(image, here, color * 0.5f);
    atomic_work_item_fence(CLK_IMAGE_MEM_FENCE, memory_order_acq_rel, memory_scope_work_item);
    const int largest = sub_group_reduce_max(values[get_global_linear_id()]);
    if (get_sub_group_local_id() == 0)
        counts[get_sub_group_id()] = (ulong)largest;
}
