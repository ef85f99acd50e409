// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Texts = std::vector<std::string>;

// What a compile gave, copied out of the record.
struct Compiled {
    int result = -1;
    Texts errors;
    Texts warnings;
    std::vector<std::uint8_t> binary;
    std::vector<Texts> table;
};

// A plug-in file, open as long as this exists.
class Open_plugin {
public:
    explicit Open_plugin(const char* file = OPENCL_PLUGIN_FILE);
    ~Open_plugin();
    Open_plugin(const Open_plugin&) = delete;
    Open_plugin& operator=(const Open_plugin&) = delete;

    vexaoc_get_api_version_function get_api_version;
    vexaoc_get_capabilities_function get_capabilities;
    vexaoc_release_capabilities_function release_capabilities;
    vexaoc_compile_function compile;
    vexaoc_release_outputs_function release_outputs;

private:
    void* handle_;
};

// One request as the manager makes it; a test changes what it is about.
struct Request {
    std::string source;
    std::vector<std::pair<std::string, std::string>> options = {
        {"shader_type", "kernel"}, {"prerotate", "false"}, {"compiler_type", "opencl"}};
    std::string core = "k46x";
    std::string revision = "r0p0_00rel0";
    std::uint32_t binary_output = 1;

    explicit Request(std::string source_text) : source(std::move(source_text)) {}

    Request& with(const std::string& key, const std::string& value);
};

Compiled compile(const Open_plugin& plugin, const Request& request);

// Opens the plug-in for this one compile.
Compiled compile(const Request& request);

// The errors of a source. Expects the request to be carried out, and a binary when there are none.
Texts errors_of(const std::string& source);

std::string kernel_file(const std::string& name);

std::string repeat(const std::string& text, std::size_t times);
