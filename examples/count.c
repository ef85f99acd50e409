/* SPDX-License-Identifier: MIT */
/* Counts the compilers of a plug-in directory, whatever its plug-ins report. */
#include "try_initialize.h"

#include <stdio.h>
#include <vexacm.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s PLUGINS\n", argv[0]);
        return 2;
    }
    if (!try_initialize(argv[1]))
        return 1;
    unsigned int* ids = NULL;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, NULL, NULL, 0);
    printf("%u\n", count);
    vexacm_release_compilers(&ids, count);
    vexacm_release_libraries();
    return fclose(stdout) == 0 ? 0 : 1;
}
