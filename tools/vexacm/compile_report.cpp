// SPDX-License-Identifier: MIT
#include "compile_report.hpp"

#include "table.hpp"

#include <iostream>

namespace vexacm_tool {

namespace {

// Texts may be null.
template <typename Visit>
void for_each_text(char** strings, uint32_t count, Visit visit) {
    for (uint32_t i = 0; i < count; ++i)
        visit(strings[i]);
}

void print_texts(const std::string& file, char** strings, uint32_t count) {
    for_each_text(strings, count, [&file](const char* given) {
        if (given == nullptr)
            return;
        std::string text = given;
        text.erase(text.find_last_not_of('\n') + 1);
        std::cerr << file + ": " + text + '\n';
    });
}

std::vector<Row> table(const vexaoc_outputs& outputs) {
    std::vector<Row> rows(outputs.num_string_lists);
    for (uint32_t i = 0; i < outputs.num_string_lists; ++i) {
        const vexaoc_string_list& list = outputs.string_lists[i];
        for_each_text(list.strings, list.num_strings, [&row = rows[i]](const char* text) {
            row.emplace_back(text != nullptr ? text : "");
        });
    }
    return rows;
}

nlohmann::ordered_json json_texts(char** strings, uint32_t count) {
    auto array = nlohmann::ordered_json::array();
    for_each_text(strings, count, [&array](const char* text) {
        if (text != nullptr)
            array.push_back(text);
    });
    return array;
}

} // namespace

void print_diagnostics(const std::string& file, const vexaoc_outputs& outputs) {
    print_texts(file, outputs.strings_a, outputs.num_strings_a);
    print_texts(file, outputs.strings_b, outputs.num_strings_b);
}

std::string compiler_line(const Compiler& compiler) {
    return one_line(std::string{"compiler: "} + compiler.driver + ' ' + compiler.core + ' ' +
                    compiler.revision + ' ' + compiler.api) +
           '\n';
}

std::string report(const vexaoc_outputs& outputs, const std::string& binary_file) {
    std::string text = aligned(table(outputs));
    if (!binary_file.empty())
        text +=
            "binary: " + std::to_string(outputs.binary_size) + " bytes in " + binary_file + '\n';
    return text;
}

std::string json_report(const Compiler& compiler, const vexaoc_outputs& outputs) {
    return to_text({{"compiler", to_json(compiler)},
                    {"errors", json_texts(outputs.strings_a, outputs.num_strings_a)},
                    {"warnings", json_texts(outputs.strings_b, outputs.num_strings_b)},
                    {"tables", table(outputs)},
                    {"binary_size", outputs.binary_size}});
}

} // namespace vexacm_tool
