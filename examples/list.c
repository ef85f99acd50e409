/* SPDX-License-Identifier: MIT */
/* Lists every compiler of a plug-in directory with its properties. */
#include <stdio.h>
#include <vexacm.h>

static void print_compiler(unsigned int id) {
    printf("%u: %s, core %s %s\n", id, vexacm_get_driver_name(id), vexacm_get_core_name(id),
           vexacm_get_core_revision(id));
    printf("  %s up to version %u\n", vexacm_get_api_name(id), vexacm_get_highest_api_version(id));
    printf("  returns binaries: %s\n", vexacm_is_binary_output_supported(id) ? "yes" : "no");
    printf("  pre-rotates: %s\n", vexacm_is_prerotate_supported(id) ? "yes" : "no");
    printf("  extensions: %s\n", vexacm_get_extensions(id));
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s PLUGINS\n", argv[0]);
        return 2;
    }
    if (!vexacm_initialize_libraries(argv[1]))
        return 1;

    unsigned int* ids = NULL;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, NULL, NULL, 0);
    for (unsigned int i = 0; i < count; ++i)
        print_compiler(ids[i]);

    vexacm_release_compilers(&ids, count);
    vexacm_release_libraries();

    if (fflush(stdout) != 0 || ferror(stdout)) {
        perror("standard output");
        return 1;
    }
    return 0;
}
