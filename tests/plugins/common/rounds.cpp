// SPDX-License-Identifier: MIT
// Opens plug-ins side by side, compiles with each of them and closes them, again and again:
//   rounds COUNT FILE...
#include "open_plugin.hpp"

#include <cstdio>
#include <cstdlib>
#include <list>

namespace {

bool is_for_kernels(const Open_plugin& plugin) {
    vexaoc_capabilities record = {};
    plugin.get_capabilities(&record);
    const bool answer = std::string("opencl") == record.entries[1];
    plugin.release_capabilities(&record);
    return answer;
}

bool compile_both_kinds(const Open_plugin& plugin, const std::string& type,
                        const std::string& right, const std::string& wrong) {
    return !compile(plugin, Request(right, type)).binary.empty() &&
           compile(plugin, Request(wrong, type)).errors.size() == 1;
}

bool use(const Open_plugin& plugin) {
    if (is_for_kernels(plugin))
        return compile_both_kinds(plugin, "kernel",
                                  "kernel void k(global float* p) { p[0] = sin(p[1]); }",
                                  "kernel void k() { x; }");
    return compile_both_kinds(plugin, "vertex", "void main() { gl_Position = vec4(0.0); }",
                              "void main() { x; }");
}

bool run_round(char** first, char** end) {
    std::list<Open_plugin> plugins;
    for (char** file = first; file != end; ++file)
        plugins.emplace_back(*file);
    bool right = true;
    for (const Open_plugin& plugin : plugins)
        right = use(plugin) && right;
    return right;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 0;
    for (int i = 0; i < rounds; ++i) {
        if (!run_round(argv + 2, argv + argc)) {
            std::fprintf(stderr, "round %d failed\n", i);
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}
