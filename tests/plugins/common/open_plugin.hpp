// SPDX-License-Identifier: MIT
#pragma once

#include "subject.hpp"

#include <vexaoc.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Table = std::vector<Texts>;

// What a compile gave, copied out of the record.
struct Compiled {
    Compiled(int compile_result, const vexaoc_outputs& outputs);

    int result;
    Texts errors;
    Texts warnings;
    std::vector<std::uint8_t> binary;
    Table table;
};

// A plug-in file, open as long as this exists.
class Open_plugin {
public:
    explicit Open_plugin(const char* file = SUBJECT.file);
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
    explicit Request(std::string source_text, const std::string& shader_type = SUBJECT.shader_type);

    Request& with(const std::string& key, const std::string& value);

    std::string source;
    std::vector<std::pair<std::string, std::string>> options;
    std::string core = "k46x";
    std::string revision = "r0p0_00rel0";
    std::uint32_t binary_output = 1;
};

Compiled compile(const Open_plugin& plugin, const Request& request);
