// SPDX-License-Identifier: MIT
#include "commands.hpp"
#include "compilers.hpp"
#include "no_match.hpp"
#include "options.hpp"
#include "plugin_directory.hpp"
#include "streams.hpp"
#include "table.hpp"

#include <nlohmann/json.hpp>
#include <sstream>

namespace vexacm_tool {

namespace {

struct Info_options {
    unsigned int id = 0;
    bool json = false;
};

std::vector<std::string> extensions(const Compiler& compiler) {
    std::istringstream text{compiler.extensions()};
    return {std::istream_iterator<std::string>{text}, {}};
}

std::string as_json(const Compiler& compiler) {
    auto object = to_json(compiler);
    object["extensions"] = extensions(compiler);
    return to_text(object);
}

std::string as_text(const Compiler& compiler) {
    std::string text = aligned({{"ID:", std::to_string(compiler.id)},
                                {"driver:", compiler.driver},
                                {"core:", compiler.core},
                                {"revision:", compiler.revision},
                                {"API:", compiler.api},
                                {"version:", std::to_string(compiler.version)},
                                {"binary:", yes_or_no(compiler.binary_output)},
                                {"prerotate:", yes_or_no(compiler.prerotate)}});
    text += "extensions:\n";
    for (const std::string& extension : extensions(compiler))
        text += "  " + one_line(extension) + '\n';
    return text;
}

Exit_status info(const Info_options& options, const std::optional<std::string>& plugins) {
    const std::string directory = plugin_directory(plugins);
    const vexacm::Library library = open_library(directory);
    // The library does not check IDs; they run from 0 to the number of all compilers.
    const unsigned int count = Compiler_ids().size();
    if (options.id >= count) {
        const std::string reason =
            count == 0 ? why_none({}, directory) : "IDs run from 0 to " + std::to_string(count - 1);
        throw Failure{Exit_status::wrong_use,
                      "there is no compiler " + std::to_string(options.id) + ": " + reason};
    }
    const Compiler compiler(options.id);
    write_standard_output(options.json ? as_json(compiler) : as_text(compiler));
    return Exit_status::done;
}

} // namespace

Command add_info(CLI::App& tool) {
    const auto options = std::make_shared<Info_options>();
    CLI::App* const command = tool.add_subcommand("info", "Tell all about one compiler");
    add_number(*command, "ID", options->id, "Number of the compiler, as listed")->required();
    command->add_flag("--json", options->json, "Print an object");
    return {command, [options](const auto& plugins) { return info(*options, plugins); }};
}

} // namespace vexacm_tool
