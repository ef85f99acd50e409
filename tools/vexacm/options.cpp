// SPDX-License-Identifier: MIT
#include "options.hpp"

#include <algorithm>
#include <charconv>

namespace vexacm_tool {

CLI::Option* add_text(CLI::App& command, const std::string& name, std::optional<std::string>& text,
                      const std::string& description) {
    return command.add_option_function<std::string>(
        name, [&text](const std::string& given) { text = given; }, description);
}

CLI::Validator one_of(const std::vector<std::string>& words) {
    return CLI::IsMember(words).description("");
}

CLI::Option* add_number(CLI::App& command, const std::string& name, unsigned int& number,
                        const std::string& description) {
    const auto read = [name, &number](const std::string& given) {
        const char* const end = given.data() + given.size();
        const auto [rest, error] = std::from_chars(given.data(), end, number);
        if (error != std::errc{} || rest != end)
            throw CLI::ValidationError(name, "'" + given + "' is no number, or too large a one");
    };
    return command.add_option_function<std::string>(name, read, description)->type_name("NUMBER");
}

std::vector<std::string> arguments_last_first(int argc, char** argv) {
    std::vector<std::string> arguments;
    bool options_ended = false;
    for (int i = 1; i < argc; ++i) {
        const std::string& argument = arguments.emplace_back(argv[i]);
        options_ended = options_ended || argument == "--";
        if (!options_ended && argument.rfind("--", 0) == 0 && argument.back() == '=')
            arguments.emplace_back();
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

void add_filters(CLI::App& command, vexacm::Filters& filters) {
    add_text(command, "--driver", filters.driver, "Driver release, such as Vexa-K300_r5p0-06rel0");
    add_text(command, "--core", filters.core, "Core, such as Vexa-K460");
    add_text(command, "--revision", filters.revision, "Revision of the core, such as r0p1_00rel0");
    add_text(command, "--api", filters.api, "Language that it compiles: openglessl or opencl")
        ->check(one_of({"openglessl", "opencl"}));
    add_text(command, "--binary-output", filters.binary_output,
             "Whether it returns binaries: true or false")
        ->check(one_of({"true", "false"}));
    add_number(command, "--min-version", filters.min_version,
               "Lowest language version to accept, such as 310");
}

void add_hidden_filters(CLI::App& command, vexacm::Filters& filters) {
    CLI::App* const hidden = command.add_option_group("filters");
    hidden->group("");
    add_filters(*hidden, filters);
}

} // namespace vexacm_tool
