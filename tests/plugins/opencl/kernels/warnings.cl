int half_done(int value) {
    if (value == 1)
        return 2;
}

kernel void warns(global int* output, global float* input) {
    output[0] = input;
    output[1] = 1 << 40;
#warning take care
#line 100 "another.cl"
    output[2] == 3;
}
