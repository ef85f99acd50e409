// SPDX-License-Identifier: MIT
#include "options.hpp"

#include "common/definition.hpp"
#include "common/option_pairs.hpp"

#include <string_view>

namespace glsl {
namespace {

struct Stage {
    std::string_view name;
    EShLanguage stage;
};

constexpr Stage STAGES[] = {
    {"vertex", EShLangVertex},
    {"tessellation_control", EShLangTessControl},
    {"tessellation_evaluation", EShLangTessEvaluation},
    {"geometry", EShLangGeometry},
    {"fragment", EShLangFragment},
    {"compute", EShLangCompute},
};

bool read_shader_type(std::string_view value, Options& options) {
    for (const Stage& known : STAGES) {
        if (known.name == value) {
            options.stage = known.stage;
            return true;
        }
    }
    return false;
}

bool read_define(std::string_view value, Options& options) {
    const std::optional<plugin::Definition> macro = plugin::read_definition(value);
    if (!macro)
        return false;
    options.preamble.append("#define ")
        .append(macro->name)
        .append(" ")
        .append(macro->value)
        .append("\n");
    return true;
}

bool read_option(std::string_view key, std::string_view value, Options& options) {
    if (key == "shader_type")
        return read_shader_type(value, options);
    if (key == "define")
        return read_define(value, options);
    if (key == "compiler_type")
        return value == "openglessl";
    if (key == "prerotate")
        return value == "true" || value == "false";
    return key == "kernel_name";
}

} // namespace

std::optional<Options> read_options(const vexaoc_inputs& inputs) {
    Options options;
    const bool understood =
        plugin::read_pairs(inputs, [&](std::string_view key, std::string_view value) {
            return read_option(key, value, options);
        });
    if (!understood || options.stage == EShLangCount)
        return std::nullopt;
    return options;
}

} // namespace glsl
