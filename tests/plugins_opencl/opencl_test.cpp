// SPDX-License-Identifier: MIT
#include "opencl_test.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
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
    Compiled compiled;
    compiled.result = plugin.compile(&inputs, &outputs);
    compiled.errors = texts(outputs.num_strings_a, outputs.strings_a);
    compiled.warnings = texts(outputs.num_strings_b, outputs.strings_b);
    compiled.binary.assign(outputs.binary, outputs.binary + outputs.binary_size);
    for (std::uint32_t i = 0; i < outputs.num_string_lists; ++i)
        compiled.table.push_back(
            texts(outputs.string_lists[i].num_strings, outputs.string_lists[i].strings));
    plugin.release_outputs(&outputs);
    return compiled;
}

Compiled compile(const Request& request) {
    return compile(Open_plugin(), request);
}

Texts errors_of(const std::string& source) {
    const Compiled compiled = compile(Request(source));
    EXPECT_EQ(compiled.result, VEXAOC_SUCCESS);
    EXPECT_EQ(compiled.errors.empty(), !compiled.binary.empty());
    EXPECT_EQ(compiled.errors.empty(), !compiled.table.empty());
    return compiled.errors;
}

std::string kernel_file(const std::string& name) {
    std::ifstream file(KERNEL_DIRECTORY "/" + name);
    if (!file)
        throw std::runtime_error("no kernel " + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string repeat(const std::string& text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}
