/* SPDX-License-Identifier: MIT */
/* Lists the compilers of a plug-in directory. */
#include <stdio.h>
#include <vexacm.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s PLUGINS\n", argv[0]);
        return 2;
    }
    vexacm_initialize_libraries(argv[1]);

    unsigned int* ids = NULL;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, NULL, NULL, 0);
    for (unsigned int i = 0; i < count; ++i)
        printf("%u: %s %s %s, %s up to %u\n", ids[i], vexacm_get_driver_name(ids[i]),
               vexacm_get_core_name(ids[i]), vexacm_get_core_revision(ids[i]),
               vexacm_get_api_name(ids[i]), vexacm_get_highest_api_version(ids[i]));

    vexacm_release_compilers(&ids, count);
    vexacm_release_libraries();
    return fclose(stdout) == 0 ? 0 : 1;
}
