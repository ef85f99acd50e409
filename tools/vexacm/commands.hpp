// SPDX-License-Identifier: MIT
#pragma once

#include "failure.hpp"

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <string>

namespace vexacm_tool {

/// A subcommand. It runs with the plug-in directory that the user named, if any.
struct Command {
    CLI::App* options;
    std::function<Exit_status(const std::optional<std::string>& plugins)> run;
};

// Each adds its options to the command line.
Command add_list(CLI::App& tool);
Command add_info(CLI::App& tool);
Command add_compile(CLI::App& tool);
Command add_batch(CLI::App& tool);
Command add_merge(CLI::App& tool);
Command add_cache(CLI::App& tool);

} // namespace vexacm_tool
