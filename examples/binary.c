/* SPDX-License-Identifier: MIT */
/* Compiles standard input as a fragment shader for one core and writes the
 * binary to a file. */
#include <stdio.h>
#include <vexacm.h>

/* Finds the newest compiler for a core that returns binaries. */
static bool find_compiler(const char* core, unsigned int* id) {
    unsigned int* ids = NULL;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, NULL, core, NULL, "openglessl", "true", 300);
    if (count > 0)
        *id = ids[0];
    vexacm_release_compilers(&ids, count);
    return count > 0;
}

static void print_table(const vexaoc_outputs* outputs) {
    for (uint32_t row = 0; row < outputs->num_string_lists; ++row) {
        const vexaoc_string_list* list = &outputs->string_lists[row];
        for (uint32_t i = 0; i < list->num_strings; ++i)
            printf("%s%s", i > 0 ? "\t" : "", list->strings[i] != NULL ? list->strings[i] : "");
        printf("\n");
    }
}

static bool write_binary(const vexaoc_outputs* outputs, const char* name) {
    FILE* file = fopen(name, "wb");
    if (file == NULL)
        return false;
    bool written = fwrite(outputs->binary, 1, outputs->binary_size, file) == outputs->binary_size;
    return fclose(file) == 0 && written;
}

static bool compile(const char* source, const char* core, const char* output) {
    unsigned int id = 0;
    if (!find_compiler(core, &id)) {
        fprintf(stderr, "no compiler for %s returns binaries\n", core);
        return false;
    }
    const char* defines[] = {"QUALITY=2", "FOG"};
    vexaoc_outputs outputs;
    if (!vexacm_compile(&outputs, source, "fragment", NULL, 0, true, false, defines, 2, id))
        return false; /* the library has said why */

    bool right = outputs.num_strings_a == 0;
    for (uint32_t i = 0; i < outputs.num_strings_a; ++i)
        if (outputs.strings_a[i] != NULL)
            fprintf(stderr, "%s\n", outputs.strings_a[i]);
    if (right) {
        print_table(&outputs);
        right = write_binary(&outputs, output);
    }
    vexacm_release_compiler_outputs(&outputs);
    return right;
}

int main(int argc, char** argv) {
    if (argc != 4) {
        fprintf(stderr, "usage: %s PLUGINS CORE OUTPUT <SHADER\n", argv[0]);
        return 2;
    }
    static char source[1 << 20];
    if (fread(source, 1, sizeof source, stdin) == sizeof source) {
        fprintf(stderr, "the shader is too long\n");
        return 1;
    }
    vexacm_initialize_libraries(argv[1]);
    bool written = compile(source, argv[2], argv[3]);
    vexacm_release_libraries();
    return written ? 0 : 1;
}
