// SPDX-License-Identifier: MIT
#include "compiled.hpp"

namespace vexacm_tool {

namespace {

using Texts = std::vector<std::string>;

// Texts may be null.
Texts texts(char** strings, std::uint32_t count) {
    Texts found;
    for (std::uint32_t i = 0; i < count; ++i)
        if (strings[i] != nullptr)
            found.emplace_back(strings[i]);
    return found;
}

// Cells keep their places: a null text is an empty one.
Texts cells(const vexaoc_string_list& list) {
    Texts found;
    for (std::uint32_t i = 0; i < list.num_strings; ++i)
        found.emplace_back(list.strings[i] != nullptr ? list.strings[i] : "");
    return found;
}

} // namespace

std::optional<Compiled> compile_with(unsigned int compiler_id, const vexacm::Request& request) {
    const auto outputs = vexacm::compile(request, compiler_id);
    if (!outputs)
        return std::nullopt;
    const vexaoc_outputs& record = **outputs;
    Compiled compiled;
    compiled.has_errors = !outputs->compiled();
    compiled.errors = texts(record.strings_a, record.num_strings_a);
    compiled.warnings = texts(record.strings_b, record.num_strings_b);
    for (std::uint32_t i = 0; i < record.num_string_lists; ++i)
        compiled.tables.push_back(cells(record.string_lists[i]));
    compiled.binary_size = record.binary_size;
    if (request.binary_output)
        compiled.binary = outputs->binary();
    return compiled;
}

} // namespace vexacm_tool
