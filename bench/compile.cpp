// SPDX-License-Identifier: MIT
// A compile request to a plug-in that does nothing, beside the direct call: with
// options prepared beforehand, and one copy of their texts on the heap.
#include <cstring>
#include <string>
#include <vector>

#include "bench_directory.hpp"
#include "bench_plugin.h"
#include "direct_plugin.hpp"
#include "paired.hpp"
#include "vexacm.h"

namespace {

constexpr const char* source = "void main() {}";

struct Request {
    explicit Request(int num_defines) {
        for (int i = 0; i < num_defines; ++i)
            texts.push_back("FEATURE_" + std::to_string(10 + i) + "=1");
        for (const std::string& text : texts)
            defines.push_back(text.c_str());
    }

    void compile(unsigned int id) const {
        vexaoc_outputs outputs;
        vexacm_compile(&outputs, source, "fragment", nullptr, 0, true, false, defines.data(),
                       static_cast<int>(defines.size()), id);
        vexacm_release_compiler_outputs(&outputs);
    }

    std::vector<std::string> texts;
    std::vector<const char*> defines;
};

// The same request as the plug-in gets it.
struct Prepared_request {
    explicit Prepared_request(const Request& request) {
        add("shader_type", "fragment");
        add("compiler_type", "openglessl");
        for (const char* define : request.defines)
            add("define", define);
        inputs.source = source;
        inputs.num_options = static_cast<std::uint32_t>(options.size());
        inputs.options = options.data();
        inputs.core_name = "k46x";
        inputs.core_revision = "r0p0_00rel0";
        inputs.binary_output = 1;
    }

    void add(const char* key, const char* value) {
        for (const char* text : {key, value}) {
            options.push_back(text);
            all_texts.append(text).push_back('\0');
        }
    }

    void compile(const Direct_plugin& plugin) {
        vexaoc_outputs outputs = {};
        plugin.compile(&inputs, &outputs);
        plugin.release_outputs(&outputs);
    }

    void compile_with_a_copy(const Direct_plugin& plugin) {
        char* const copy = new char[all_texts.size()];
        std::memcpy(copy, all_texts.data(), all_texts.size());
        paired::keep(copy);
        compile(plugin);
        delete[] copy;
    }

    std::vector<const char*> options;
    std::string all_texts;
    vexaoc_inputs inputs = {};
};

} // namespace

int main() {
    const Bench_directory directory(1);
    const Direct_plugin plugin(directory.plugin(0));
    const auto set_cores = plugin.function<void(std::uint32_t)>("bench_plugin_set_cores");
    const auto initialise = [&](unsigned int num_cores) {
        vexacm_release_libraries();
        set_cores(num_cores);
        vexacm_initialize_libraries(directory.root().c_str());
    };

    initialise(24);
    for (const int num_defines : {0, 1, 8, 64}) {
        const Request request(num_defines);
        Prepared_request prepared(request);
        const auto library = paired::slice_of([&] { request.compile(0); });
        paired::compare("compile", num_defines, library,
                        paired::slice_of([&] { prepared.compile_with_a_copy(plugin); }));
        paired::compare("compile, no copy", num_defines, library,
                        paired::slice_of([&] { prepared.compile(plugin); }));
    }

    for (const unsigned int num_cores : {100U, 10000U, 1000000U}) {
        initialise(num_cores);
        const Request request(8);
        Prepared_request prepared(request);
        paired::compare("compile, catalogue", num_cores,
                        paired::slice_of([&] { request.compile(num_cores - 1); }),
                        paired::slice_of([&] { prepared.compile_with_a_copy(plugin); }));
    }
    vexacm_release_libraries();
}
