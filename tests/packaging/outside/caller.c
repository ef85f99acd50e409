/* SPDX-License-Identifier: MIT
 * Prints the version and how many compilers a directory has. */
#include <stdio.h>

#include <vexacm.h>

int main(int argc, char** argv) {
    vexacm_version version = {0, 0, 0};
    unsigned int* ids = NULL;
    unsigned int count = 0;
    if (argc != 2)
        return 2;
    vexacm_initialize_libraries(argv[1]);
    vexacm_get_manager_version(&version);
    vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, NULL, NULL, 0);
    printf("%u.%u.%u: %u compilers\n", version.major, version.minor, version.patch, count);
    vexacm_release_compilers(&ids, count);
    vexacm_release_libraries();
    return 0;
}
