// SPDX-License-Identifier: MIT
#pragma once

#include <variant>

#include "description.hpp"

/// What is asked of the library, and what it answers, as texts.
namespace model {

struct Initialise {};
struct Release {};
struct Manager_version {};

struct List_compilers {
    Text driver_name;
    Text core_name;
    Text core_revision;
    Text api_name;
    Text binary_output;
    unsigned version = 0;
    bool null_compilers = false;
    bool null_count = false;
};

/// Release a null array; before initialisation, an array that is not the
/// library's.
struct Release_list {};
/// Only before initialisation: afterwards, each compile releases its outputs.
struct Release_outputs {};

enum class Property {
    driver_name,
    core_name,
    core_revision,
    api_name,
    highest_version,
    extensions,
    binary_output,
    prerotate
};

struct Ask {
    Property property;
    unsigned id = 0;
};

struct Compile {
    bool null_outputs = false;
    Text source;
    Text shader_type;
    std::vector<std::string> kernel_names; ///< here and below: the count stands
    int num_kernel_names = 0;              ///< apart and may be negative
    bool binary_output = false;
    bool prerotate = false;
    std::vector<std::string> defines;
    int num_defines = 0;
    unsigned id = 0;
};

using Request = std::variant<Initialise, Release, Manager_version, List_compilers, Release_list,
                             Release_outputs, Ask, Compile>;

/// What a compile gave.
struct Outputs {
    std::vector<std::vector<Text>> lists;
    std::string binary;
    std::vector<Text> a;
    std::vector<Text> b;
};

/// All that can be seen of one request.
struct Reply {
    std::string result;
    std::string err;
    std::string log;
};

std::string shown(const Text& text);
std::string shown(bool value);
std::string shown(const Outputs& outputs);
std::string shown(const std::vector<unsigned>& ids);
std::string shown(const Request& request);
std::string shown(const Reply& reply);
std::string shown(const Directory& directory);

/// A plug-in's steering, as its file holds it.
std::string steering(const Plugin& plugin);

} // namespace model
