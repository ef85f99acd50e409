/* SPDX-License-Identifier: MIT
 *
 * Uses the library again and again, and holds that nothing of it is left:
 *
 *   library_rounds initialise COUNT LIBRARY PLUGINS
 *   library_rounds load COUNT LIBRARY PLUGINS
 *
 * A round initialises the library, asks, compiles and releases; with "load" it
 * begins with loading the library and ends with unloading it. Each round has to
 * write to standard error what the first one wrote. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include "measures.h"
#include "vexacm.h"

/* Memory grows for a while: caches fill, the heap finds its size. */
enum { WARM_UP_ROUNDS = 10, RESIDENT_SLACK = 128, TEXT_SIZE = 16384 };

static void fail(const char* what) {
    printf("%s\n", what);
    exit(1);
}

static void* open_library(const char* path) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        fail(dlerror());
    return library;
}

/* Copies a function's address: C has no cast to it from an object's. */
static void find(void* library, const char* name, void* function) {
    void* address = dlsym(library, name);
    if (!address)
        fail(name);
    memcpy(function, &address, sizeof address);
}

static void compile_with(void* library, unsigned int id, const char* source, bool done) {
    bool (*compile)(vexaoc_outputs*, const char*, const char*, const char* const*, int, bool, bool,
                    const char* const*, int, unsigned int);
    void (*release)(vexaoc_outputs*);
    find(library, "vexacm_compile", &compile);
    find(library, "vexacm_release_compiler_outputs", &release);
    const char* const defines[] = {"A", "B=1"};
    vexaoc_outputs outputs;
    if (compile(&outputs, source, "fragment", NULL, 0, true, false, defines, 2, id) != done)
        fail(source);
    release(&outputs);
}

static void use(void* library, const char* plugins) {
    bool (*initialize)(const char*);
    void (*release)(void);
    void (*get_compilers)(unsigned int**, unsigned int*, const char*, const char*, const char*,
                          const char*, const char*, unsigned int);
    void (*release_compilers)(unsigned int**, unsigned int);
    const char* (*get_extensions)(unsigned int);
    find(library, "vexacm_initialize_libraries", &initialize);
    find(library, "vexacm_release_libraries", &release);
    find(library, "vexacm_get_compilers", &get_compilers);
    find(library, "vexacm_release_compilers", &release_compilers);
    find(library, "vexacm_get_extensions", &get_extensions);

    if (!initialize(plugins))
        fail("not initialised");
    unsigned int* ids;
    unsigned int count;
    get_compilers(&ids, &count, NULL, NULL, NULL, NULL, NULL, 0);
    if (count != 3)
        fail("not the three compilers");
    compile_with(library, ids[0], "void main() {}", true);
    compile_with(library, ids[1], "refuse", false);
    compile_with(library, ids[2], "void main() {}", true);
    if (!strstr(get_extensions(ids[2]), "GL_"))
        fail("no extensions");
    release_compilers(&ids, count);
    release();
}

/* What a round wrote to standard error, which is a file, has to be the same. */
static void check_written(void) {
    static char first[TEXT_SIZE];
    static char text[TEXT_SIZE];
    static ssize_t first_size = -1;
    const ssize_t size = pread(2, text, sizeof text, 0);
    if (first_size < 0) {
        memcpy(first, text, sizeof text);
        first_size = size;
    }
    if (size <= 0 || size != first_size || memcmp(first, text, (size_t)size) != 0)
        fail("another standard error");
    if (ftruncate(2, 0) != 0 || lseek(2, 0, SEEK_SET) != 0)
        abort();
}

static void run_rounds(long count, void* library, const char* path, const char* plugins) {
    for (long i = 0; i < count; ++i) {
        void* loaded = library ? library : open_library(path);
        use(loaded, plugins);
        if (!library) {
            dlclose(loaded);
            if (is_mapped("libcompiler_manager"))
                fail("the library is not unloaded");
        }
        check_written();
        if (is_mapped("libVexa"))
            fail("a plug-in is not unloaded");
    }
}

/* Begins again without the allocator's caches for threads: what lies there
 * counts as allocated, and it would be no steady number. */
static void turn_caches_off(char** argv) {
    static const char tunables[] = "glibc.malloc.tcache_count=0";
    const char* set = getenv("GLIBC_TUNABLES");
    if (set && strcmp(set, tunables) == 0)
        return;
    setenv("GLIBC_TUNABLES", tunables, 1);
    execv("/proc/self/exe", argv);
    abort();
}

int main(int argc, char** argv) {
    turn_caches_off(argv);
    if (argc != 5)
        fail("usage: library_rounds initialise|load COUNT LIBRARY PLUGINS");
    const long count = atol(argv[2]);
    const int written = memfd_create("standard error", 0);
    if (count <= 0 || dup2(written, 2) != 2)
        fail("no count, or no memory");
    void* library = strcmp(argv[1], "load") == 0 ? NULL : open_library(argv[3]);

    run_rounds(WARM_UP_ROUNDS, library, argv[3], argv[4]);
    const Measures before = measure();
    run_rounds(count, library, argv[3], argv[4]);
    const Measures after = measure();

    printf("%ld rounds (%s), before -> after\n", count, argv[1]);
    printf("resident memory  %8ld -> %8ld KiB\n", before.resident, after.resident);
    printf("heap             %8ld -> %8ld bytes\n", before.heap, after.heap);
    printf("mappings         %8ld -> %8ld\n", before.mappings, after.mappings);
    printf("descriptors      %8ld -> %8ld\n", before.descriptors, after.descriptors);
    return after.resident <= before.resident + RESIDENT_SLACK && after.heap <= before.heap &&
                   after.mappings == before.mappings && after.descriptors == before.descriptors
               ? 0
               : 1;
}
