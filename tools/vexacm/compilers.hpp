// SPDX-License-Identifier: MIT
#pragma once

#include "library.hpp"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace vexacm_tool {

/// The properties of one compiler; the texts are the library's own.
struct Compiler {
    unsigned int id;
    const char* driver;
    const char* core;
    const char* revision;
    const char* api;
    unsigned int version;
    bool binary_output;
    bool prerotate;
};

/// Which compilers are wanted; what is not set lets every one pass.
struct Filters {
    std::optional<std::string> driver;
    std::optional<std::string> core;
    std::optional<std::string> revision;
    std::optional<std::string> api;
    std::optional<std::string> binary_output;
    unsigned int min_version = 0;
};

Compiler_ids matching_compilers(const Filters& filters);
Compiler properties(unsigned int id);

const char* yes_or_no(bool answer);
nlohmann::ordered_json to_json(const Compiler& compiler);

/// The value as it is printed; bytes that are no UTF-8 are replaced.
std::string to_text(const nlohmann::ordered_json& value);

} // namespace vexacm_tool
