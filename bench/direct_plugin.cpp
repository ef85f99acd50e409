// SPDX-License-Identifier: MIT
#include "direct_plugin.hpp"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <dlfcn.h>

namespace {

void* or_end(void* found) {
    if (found)
        return found;
    std::fprintf(stderr, "%s\n", dlerror());
    std::exit(1);
}

} // namespace

Direct_plugin::Direct_plugin(const std::string& path)
    : handle(or_end(dlopen(path.c_str(), RTLD_NOW))) {
    get_api_version = function<void(vexaoc_api_version*)>("vexaoc_get_api_version");
    compile = function<int(vexaoc_inputs*, vexaoc_outputs*)>("vexaoc_compile");
    release_outputs = function<int(vexaoc_outputs*)>("vexaoc_release_outputs");
    get_capabilities = function<int(vexaoc_capabilities*)>("vexaoc_get_capabilities");
    release_capabilities = function<int(vexaoc_capabilities*)>("vexaoc_release_capabilities");
}

Direct_plugin::~Direct_plugin() {
    dlclose(handle);
}

void* Direct_plugin::find(const char* name) const {
    return or_end(dlsym(handle, name));
}

std::vector<std::unique_ptr<Direct_plugin>> open_all(const std::string& root) {
    std::vector<std::unique_ptr<Direct_plugin>> plugins;
    for (const char* api : {"/openglessl/", "/opencl/"}) {
        const std::string directory = root + api;
        DIR* const entries = opendir(directory.c_str());
        while (const dirent* const entry = readdir(entries))
            if (std::strstr(entry->d_name, ".so"))
                plugins.push_back(std::make_unique<Direct_plugin>(directory + entry->d_name));
        closedir(entries);
    }
    return plugins;
}
