struct inner { int a; };
struct inner { int b; };
kernel int wrong(int* pointer, image2d_t image, bool flag) {
    goto nowhere;
    half h = 1.0h;
    int (*function)(int);
    return pointer[image];
}
