// The generic address space, program scope variables, C11 atomics, pipes, work-group functions.
global atomic_int turn = ATOMIC_VAR_INIT(0);

static int first(const int* values) {
    return values[0];
}

kernel void generic_sum(global int* input, read_only pipe int incoming, write_only pipe int outgoing) {
    local int shared;
    int own = 0;
    if (get_local_id(0) == 0)
        shared = first(input);
    work_group_barrier(CLK_LOCAL_MEM_FENCE);
    read_pipe(incoming, &own);
    const int sum = work_group_reduce_add(own + first(&shared) + first(&own));
    const int old = atomic_fetch_add_explicit(&turn, sum, memory_order_relaxed, memory_scope_device);
    write_pipe(outgoing, &old);
}

kernel void spawn(global int* data) {
    const ndrange_t range = ndrange_1D(16);
    enqueue_kernel(get_default_queue(), CLK_ENQUEUE_FLAGS_WAIT_KERNEL, range,
                   ^{ data[get_global_id(0)] += 1; });
}
