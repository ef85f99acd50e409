/* SPDX-License-Identifier: MIT
 *
 * Loads a library and closes it, as a program does that links it: what
 * script/bench counts the instructions of. */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char** argv) {
    void* const library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : NULL;
    if (!library) {
        fprintf(stderr, "usage: load LIBRARY\n");
        return 2;
    }
    return dlclose(library);
}
