// SPDX-License-Identifier: MIT
#include "options.hpp"

#include <algorithm>
#include <cstdint>
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

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool is_letter_or_digit(char c) {
    return is_letter(c) || (c >= '0' && c <= '9');
}

bool is_name(std::string_view text) {
    return !text.empty() && is_letter(text.front()) &&
           std::all_of(text.begin(), text.end(), is_letter_or_digit);
}

// Whatever would not stay within its line: a line end, one that is taken back by a backslash, and
// a comment, which would run on into the source.
bool fits_a_line(std::string_view text) {
    return text.find_first_of("\n\r\\") == std::string_view::npos &&
           text.find("/*") == std::string_view::npos;
}

bool read_define(std::string_view value, Options& options) {
    const std::size_t equals = value.find('=');
    const std::string_view name = value.substr(0, equals);
    const std::string_view replacement =
        equals == std::string_view::npos ? "1" : value.substr(equals + 1);
    if (!is_name(name) || !fits_a_line(replacement))
        return false;
    options.preamble.append("#define ").append(name).append(" ").append(replacement).append("\n");
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
    if (inputs.num_options % 2 != 0 || inputs.options == nullptr)
        return std::nullopt;
    Options options;
    for (std::uint32_t i = 0; i < inputs.num_options; i += 2) {
        const char* key = inputs.options[i];
        const char* value = inputs.options[i + 1];
        if (key == nullptr || value == nullptr || !read_option(key, value, options))
            return std::nullopt;
    }
    if (options.stage == EShLangCount)
        return std::nullopt;
    return options;
}

} // namespace glsl
