// SPDX-License-Identifier: MIT
#include "open_plugin.hpp"

#include <stdexcept>

#include <dlfcn.h>

namespace {

template <typename Function>
Function symbol(void* handle, const char* name) {
    void* found = dlsym(handle, name);
    if (found == nullptr)
        throw std::runtime_error(dlerror());
    return reinterpret_cast<Function>(found);
}

void* open_file(const char* file) {
    void* handle = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
        throw std::runtime_error(dlerror());
    return handle;
}

Texts texts(std::uint32_t count, char** array) {
    return {array, array + count};
}

} // namespace

Compiled::Compiled(int compile_result, const vexaoc_outputs& outputs)
    : result(compile_result), errors(texts(outputs.num_strings_a, outputs.strings_a)),
      warnings(texts(outputs.num_strings_b, outputs.strings_b)),
      binary(outputs.binary, outputs.binary + outputs.binary_size) {
    for (std::uint32_t i = 0; i < outputs.num_string_lists; ++i)
        table.push_back(
            texts(outputs.string_lists[i].num_strings, outputs.string_lists[i].strings));
}

Open_plugin::Open_plugin(const char* file) : handle_(open_file(file)) {
    get_api_version = symbol<vexaoc_get_api_version_function>(handle_, "vexaoc_get_api_version");
    get_capabilities = symbol<vexaoc_get_capabilities_function>(handle_, "vexaoc_get_capabilities");
    release_capabilities =
        symbol<vexaoc_release_capabilities_function>(handle_, "vexaoc_release_capabilities");
    compile = symbol<vexaoc_compile_function>(handle_, "vexaoc_compile");
    release_outputs = symbol<vexaoc_release_outputs_function>(handle_, "vexaoc_release_outputs");
}

Open_plugin::~Open_plugin() {
    dlclose(handle_);
}

Request::Request(std::string source_text, const std::string& shader_type)
    : source(std::move(source_text)), options{{"shader_type", shader_type},
                                              {"prerotate", "false"},
                                              {"compiler_type",
                                               shader_type == "kernel" ? "opencl" : "openglessl"}} {
}

Request& Request::with(const std::string& key, const std::string& value) {
    options.emplace_back(key, value);
    return *this;
}

Compiled compile(const Open_plugin& plugin, const Request& request) {
    std::vector<const char*> options;
    for (const auto& [key, value] : request.options) {
        options.push_back(key.c_str());
        options.push_back(value.c_str());
    }
    vexaoc_inputs inputs = {request.source.c_str(),   static_cast<std::uint32_t>(options.size()),
                            options.data(),           request.core.c_str(),
                            request.revision.c_str(), request.binary_output};
    vexaoc_outputs outputs = {};
    const int result = plugin.compile(&inputs, &outputs);
    Compiled compiled(result, outputs);
    plugin.release_outputs(&outputs);
    return compiled;
}
