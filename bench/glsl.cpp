// SPDX-License-Identifier: MIT
// The GLSL plug-in through the library and by direct calls: the probe for
// extensions and a real shader.
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench_directory.hpp"
#include "bench_plugin.h"
#include "direct_plugin.hpp"
#include "paired.hpp"
#include "vexacm.h"

namespace {

// A request as a plug-in got it, kept.
struct Request {
    explicit Request(const vexaoc_inputs& inputs) : source(inputs.source) {
        texts.assign(inputs.options, inputs.options + inputs.num_options);
    }

    // True when the outputs hold no error.
    bool compile(const Direct_plugin& plugin, const vexaoc_core& core) const {
        std::vector<const char*> options;
        for (const std::string& text : texts)
            options.push_back(text.c_str());
        vexaoc_inputs inputs = {};
        inputs.source = source.c_str();
        inputs.num_options = static_cast<std::uint32_t>(options.size());
        inputs.options = options.data();
        inputs.core_name = core.core_name;
        inputs.core_revision = core.core_revision;
        vexaoc_outputs outputs = {};
        plugin.compile(&inputs, &outputs);
        const bool clean = outputs.num_strings_a == 0;
        plugin.release_outputs(&outputs);
        return clean;
    }

    std::string source;
    std::vector<std::string> texts;
};

std::vector<Request> recorded;

// What the library asks when it looks for extensions.
void record_probe() {
    const Bench_directory directory(1);
    const Direct_plugin recorder(directory.plugin(0));
    recorder.function<void(void (*)(const vexaoc_inputs*))>("bench_plugin_on_compile")(
        [](const vexaoc_inputs* inputs) { recorded.emplace_back(*inputs); });
    vexacm_initialize_libraries(directory.root().c_str());
    vexacm_get_extensions(0);
    vexacm_release_libraries();
}

std::string read_file(const char* path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4)
        return 2;
    const std::string root = argv[1];
    const Direct_plugin plugin(argv[2]);
    const std::string shader = read_file(argv[3]);
    record_probe();

    vexaoc_capabilities capabilities = {};
    plugin.get_capabilities(&capabilities);
    const vexaoc_core core = capabilities.cores[0];

    // The answer is kept, so that each probe takes a catalogue of its own.
    const paired::Slice probe = [&](std::size_t times) {
        double seconds = 0;
        for (; times > 0; --times) {
            vexacm_initialize_libraries(root.c_str());
            const double start = paired::processor_seconds();
            vexacm_get_extensions(0);
            seconds += paired::processor_seconds() - start;
            vexacm_release_libraries();
        }
        return seconds;
    };
    paired::compare("probe", static_cast<double>(recorded.size()), probe, paired::slice_of([&] {
                        for (const Request& request : recorded)
                            paired::keep(request.compile(plugin, core));
                    }),
                    1.5);

    Request request(recorded.front());
    request.source = shader;
    vexacm_initialize_libraries(root.c_str());
    paired::compare("shader", static_cast<double>(shader.size()), paired::slice_of([&] {
                        vexaoc_outputs outputs;
                        vexacm_compile(&outputs, shader.c_str(), "fragment", nullptr, 0, false,
                                       false, nullptr, 0, 0);
                        vexacm_release_compiler_outputs(&outputs);
                    }),
                    paired::slice_of([&] { paired::keep(request.compile(plugin, core)); }), 1.5);
    vexacm_release_libraries();
    plugin.release_capabilities(&capabilities);
}
