// SPDX-License-Identifier: MIT
#include "commands.hpp"
#include "compilers.hpp"
#include "no_match.hpp"
#include "options.hpp"
#include "plugin_directory.hpp"
#include "streams.hpp"
#include "table.hpp"

#include <nlohmann/json.hpp>

namespace vexacm_tool {

namespace {

struct List_options {
    vexacm::Filters filters;
    bool json = false;
};

std::string as_json(const Compiler_ids& ids) {
    auto array = nlohmann::ordered_json::array();
    for (const unsigned int id : ids)
        array.push_back(to_json(Compiler(id)));
    return to_text(array);
}

std::string as_table(const Compiler_ids& ids) {
    std::vector<Row> rows{
        {"ID", "driver", "core", "revision", "API", "version", "binary", "prerotate"}};
    for (const unsigned int id : ids) {
        const Compiler compiler(id);
        rows.push_back({std::to_string(id), compiler.driver, compiler.core, compiler.revision,
                        compiler.api, std::to_string(compiler.version),
                        yes_or_no(compiler.binary_output), yes_or_no(compiler.prerotate)});
    }
    return aligned(rows);
}

Exit_status list(const List_options& options, const std::optional<std::string>& plugins) {
    const std::string directory = plugin_directory(plugins);
    const vexacm::Library library = open_library(directory);
    // An array that is empty is printed too.
    if (options.json)
        write_standard_output(as_json(Compiler_ids(options.filters)));
    const Compiler_ids ids = some_compilers(options.filters, directory);
    if (!options.json)
        write_standard_output(as_table(ids));
    return Exit_status::done;
}

} // namespace

Command add_list(CLI::App& tool) {
    const auto options = std::make_shared<List_options>();
    CLI::App* const command =
        tool.add_subcommand("list", "List the compilers that pass the filters");
    add_filters(*command, options->filters);
    command->add_flag("--json", options->json, "Print an array of objects");
    return {command, [options](const auto& plugins) { return list(*options, plugins); }};
}

} // namespace vexacm_tool
