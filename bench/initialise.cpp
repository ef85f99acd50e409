// SPDX-License-Identifier: MIT
// Initialisation and release beside readdir, dlopen, five dlsym, the same calls
// of the plug-in and dlclose.
#include "bench_directory.hpp"
#include "direct_plugin.hpp"
#include "paired.hpp"
#include "vexacm.h"

namespace {

// The calls that a plug-in gets, once to be checked and once to be listed.
void question(const Direct_plugin& plugin) {
    vexaoc_api_version version = {};
    plugin.get_api_version(&version);
    vexaoc_capabilities capabilities = {};
    plugin.get_capabilities(&capabilities);
    paired::keep(capabilities);
    plugin.release_capabilities(&capabilities);
}

void by_hand(const std::string& root) {
    const auto plugins = open_all(root);
    for (int pass = 0; pass < 2; ++pass)
        for (const auto& plugin : plugins)
            question(*plugin);
}

} // namespace

int main() {
    for (const unsigned int num_plugins : {1U, 10U, 100U, 1000U}) {
        const Bench_directory plugins(num_plugins);
        const auto floor = paired::slice_of([&] { by_hand(plugins.root()); });
        paired::compare("initialise", num_plugins, paired::slice_of([&] {
                            vexacm_initialize_libraries(plugins.root().c_str());
                            vexacm_release_libraries();
                        }),
                        floor, 1);
        // What the machine adds: the floor beside itself.
        if (num_plugins == 10)
            paired::compare("noise", num_plugins, floor, floor, 1);
    }
}
