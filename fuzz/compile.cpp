// SPDX-License-Identifier: MIT
//
// Compile requests and their outputs: the input is a script (see script.hpp) of
// what a plug-in makes of sources, and of requests. The record it begins with
// gives an OpenGL ES compiler, 0, and an OpenCL one, 1. What a compile gives is
// copied, compared and released.
#include "comparison.hpp"
#include "script.hpp"
#include "target.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Plugin_directory files;
    const std::string input(data, data + size);
    const Script script(input);

    model::Directory directory;
    directory.plugins = {plugin("openglessl", "Vexa-K300_r5p0-06rel0")};
    script.steer(directory.plugins.back());

    Comparison both(directory, files);
    both.ask(model::Initialise());
    for (model::Compile request : script.requests())
        if (both.compilers() > 0) {
            request.id %= both.compilers();
            both.ask(request);
        }
    both.ask(model::Release());
    return 0;
}
