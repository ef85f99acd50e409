/* SPDX-License-Identifier: MIT */
/* Compiles a file with the first compiler for its language. */
#include <stdio.h>
#include <string.h>
#include <vexacm.h>

/* Reads a text file; false when that fails or the text does not fit. */
static bool read_file(const char* name, char* text, size_t size) {
    FILE* file = fopen(name, "rb");
    if (file == NULL)
        return false;
    size_t length = fread(text, 1, size, file);
    bool whole = length < size && !ferror(file);
    fclose(file);
    if (whole)
        text[length] = '\0';
    return whole && strlen(text) == length;
}

static void print_texts(const char* name, char** texts, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i)
        if (texts[i] != NULL)
            fprintf(stderr, "%s: %s\n", name, texts[i]);
}

/* Returns whether the source compiled; its errors and warnings are printed. */
static bool compile(const char* name, const char* source, const char* type, char** kernels,
                    int num_kernels) {
    const char* api = strcmp(type, "kernel") == 0 ? "opencl" : "openglessl";
    unsigned int* ids = NULL;
    unsigned int count = 0;
    vexacm_get_compilers(&ids, &count, NULL, NULL, NULL, api, NULL, 0);
    if (count == 0)
        fprintf(stderr, "no compiler for %s\n", api);

    vexaoc_outputs outputs;
    bool compiled = false;
    if (count > 0 && vexacm_compile(&outputs, source, type, (const char* const*)kernels,
                                    num_kernels, false, false, NULL, 0, ids[0])) {
        print_texts(name, outputs.strings_a, outputs.num_strings_a);
        print_texts(name, outputs.strings_b, outputs.num_strings_b);
        compiled = outputs.num_strings_a == 0;
        vexacm_release_compiler_outputs(&outputs);
    }
    vexacm_release_compilers(&ids, count);
    return compiled;
}

int main(int argc, char** argv) {
    if (argc < 4) {
        fprintf(stderr, "usage: %s PLUGINS FILE SHADER_TYPE [KERNEL...]\n", argv[0]);
        return 2;
    }
    static char source[1 << 20];
    if (!read_file(argv[2], source, sizeof source)) {
        fprintf(stderr, "%s: cannot be read, is no text or is too long\n", argv[2]);
        return 1;
    }
    vexacm_initialize_libraries(argv[1]);
    bool compiled = compile(argv[2], source, argv[3], argv + 4, argc - 4);
    vexacm_release_libraries();
    return compiled ? 0 : 1;
}
