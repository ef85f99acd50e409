// SPDX-License-Identifier: MIT
#include "commands.hpp"
#include "options.hpp"
#include "streams.hpp"

#include <csignal>
#include <iostream>
#include <sstream>
#include <vexacm.h>

namespace {

using namespace vexacm_tool;

std::string version() {
    return "vexacm " + std::to_string(VEXACM_VERSION_MAJOR) + '.' +
           std::to_string(VEXACM_VERSION_MINOR) + '.' + std::to_string(VEXACM_VERSION_PATCH);
}

// What was not expected comes first: an unknown command is no missing one.
std::string usage_error(const CLI::App* tool, const CLI::Error& error) {
    std::string unexpected;
    for (const std::string& argument : tool->remaining(true))
        unexpected += ' ' + argument;
    const std::string reason = unexpected.empty() ? error.what() : "not expected:" + unexpected;
    return "vexacm: " + reason + "\nRun with --help for more information.\n";
}

// Prints the help or version that was asked for, or says what is wrong.
Exit_status finish_parsing(const CLI::App& tool, const CLI::ParseError& reason) {
    std::ostringstream asked_for;
    const int code = tool.exit(reason, asked_for, std::cerr);
    write_standard_output(asked_for.str());
    return code == 0 ? Exit_status::done : Exit_status::wrong_use;
}

Exit_status run(int argc, char** argv) {
    CLI::App tool{"Lists and runs offline shader compilers.", "vexacm"};
    tool.set_version_flag("--version", version);
    std::optional<std::string> plugins;
    tool.failure_message(usage_error);
    tool.fallthrough()->require_subcommand(1);
    add_text(tool, "--plugins", plugins, "Plug-in directory, instead of the tool's own")
        ->type_name("DIR");
    const Command commands[] = {add_list(tool),  add_info(tool),  add_compile(tool),
                                add_batch(tool), add_merge(tool), add_cache(tool)};
    // Not before: the commands would take it over.
    tool.footer("Exit status: 0 done, 1 errors in the source, 2 wrong use, 3 no compiler matches,\n"
                "4 request refused, 5 input or output failed. See vexacm(1).");
    try {
        tool.parse(arguments_last_first(argc, argv));
    } catch (const CLI::ParseError& reason) {
        return finish_parsing(tool, reason);
    }
    for (const Command& command : commands)
        if (command.options->parsed())
            return command.run(plugins);
    return Exit_status::wrong_use;
}

} // namespace

int main(int argc, char** argv) {
    // A reader that went away and a file that may not grow are failed writes
    // like any other.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    hold_standard_streams();
    auto status = Exit_status::refused;
    try {
        status = run(argc, argv);
    } catch (const Failure& failure) {
        tell(failure.what());
        status = failure.status;
    } catch (const std::exception& error) {
        tell(error.what());
    }
    return static_cast<int>(std::cerr ? status : Exit_status::input_output);
}
