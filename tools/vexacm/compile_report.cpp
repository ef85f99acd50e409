// SPDX-License-Identifier: MIT
#include "compile_report.hpp"

#include "table.hpp"

#include <iostream>
#include <nlohmann/json.hpp>

namespace vexacm_tool {

namespace {

void print_texts(const std::string& file, const std::vector<std::string>& texts) {
    for (std::string text : texts) {
        text.erase(text.find_last_not_of('\n') + 1);
        std::cerr << file + ": " + text + '\n';
    }
}

} // namespace

void print_diagnostics(const std::string& file, const Compiled& compiled) {
    print_texts(file, compiled.errors);
    print_texts(file, compiled.warnings);
}

std::string compiler_line(const Compiler& compiler) {
    return one_line(std::string{"compiler: "} + compiler.driver + ' ' + compiler.core + ' ' +
                    compiler.revision + ' ' + compiler.api) +
           '\n';
}

std::string report(const Compiled& compiled, const std::string& binary_file) {
    std::string text = aligned(compiled.tables);
    if (!binary_file.empty())
        text +=
            "binary: " + std::to_string(compiled.binary_size) + " bytes in " + binary_file + '\n';
    return text;
}

std::string json_report(const Compiler& compiler, const Compiled& compiled) {
    return to_text({{"compiler", to_json(compiler)},
                    {"errors", compiled.errors},
                    {"warnings", compiled.warnings},
                    {"tables", compiled.tables},
                    {"binary_size", compiled.binary_size}});
}

} // namespace vexacm_tool
