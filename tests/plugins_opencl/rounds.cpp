// SPDX-License-Identifier: MIT
// Opens plug-ins, compiles with each of them and closes them, again and again:
//   rounds COUNT FILE...
#include <vexaoc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>

namespace {

template <typename Function>
Function symbol(void* plugin, const char* name) {
    return reinterpret_cast<Function>(dlsym(plugin, name));
}

bool is_for_kernels(void* plugin) {
    vexaoc_capabilities record = {};
    symbol<vexaoc_get_capabilities_function>(plugin, "vexaoc_get_capabilities")(&record);
    const bool answer = std::strcmp(record.entries[1], "opencl") == 0;
    symbol<vexaoc_release_capabilities_function>(plugin, "vexaoc_release_capabilities")(&record);
    return answer;
}

// The number of errors, or -1.
int compile(void* plugin, const char* type, const char* source) {
    const char* options[] = {"shader_type", type};
    vexaoc_inputs inputs = {source, 2, options, "k46x", "r0p0_00rel0", 1};
    vexaoc_outputs outputs = {};
    const int result = symbol<vexaoc_compile_function>(plugin, "vexaoc_compile")(&inputs, &outputs);
    const int errors = result == VEXAOC_SUCCESS ? static_cast<int>(outputs.num_strings_a) : -1;
    symbol<vexaoc_release_outputs_function>(plugin, "vexaoc_release_outputs")(&outputs);
    return errors;
}

bool compile_both_kinds(void* plugin) {
    if (is_for_kernels(plugin))
        return compile(plugin, "kernel", "kernel void k(global float* p) { p[0] = sin(p[1]); }") ==
                   0 &&
               compile(plugin, "kernel", "kernel void k() { x; }") == 1;
    return compile(plugin, "vertex", "void main() { gl_Position = vec4(0.0); }") == 0 &&
           compile(plugin, "vertex", "void main() { x; }") == 1;
}

bool run_round(char** files, int count) {
    for (int i = 0; i < count; ++i) {
        void* plugin = dlopen(files[i], RTLD_NOW | RTLD_LOCAL);
        if (plugin == nullptr) {
            std::fprintf(stderr, "%s\n", dlerror());
            return false;
        }
        const bool right = compile_both_kinds(plugin);
        dlclose(plugin);
        if (!right)
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 0;
    for (int i = 0; i < rounds; ++i) {
        if (!run_round(argv + 2, argc - 2)) {
            std::fprintf(stderr, "round %d failed\n", i);
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
