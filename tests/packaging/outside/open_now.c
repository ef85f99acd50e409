/* SPDX-License-Identifier: MIT
 * Opens a library with every symbol bound, from a program without C++. */
#include <stdio.h>

#include <dlfcn.h>

int main(int argc, char** argv) {
    if (argc == 3 && dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) != NULL) {
        puts(dlsym(dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD), argv[2]) != NULL ? "open" : "empty");
        return 0;
    }
    fprintf(stderr, "%s\n", dlerror());
    return 1;
}
