// SPDX-License-Identifier: MIT
#pragma once

#include <vexaoc.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// What a compile gave, copied out of the record.
struct Compiled {
    int result = -1;
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
    std::vector<std::uint8_t> binary;
    std::vector<std::vector<std::string>> table;
};

// A plug-in file, open as long as this exists.
class Open_plugin {
public:
    explicit Open_plugin(const char* file);
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

// One request to the GLSL plug-in; a test changes what it is about.
struct Request {
    std::string source;
    std::vector<std::pair<std::string, std::string>> options;
    std::string core = "k46x";
    std::string revision = "r0p0_00rel0";
    std::uint32_t binary_output = 1;

    Request(std::string source, const std::string& stage);

    Request& with(const std::string& key, const std::string& value);
};

Compiled compile(const Open_plugin& plugin, const Request& request);

// Opens the GLSL plug-in for this one compile.
Compiled compile(const Request& request);

std::string shader_file(const std::string& name);
