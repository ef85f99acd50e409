// SPDX-License-Identifier: MIT
#include "options.hpp"

#include "../failure.hpp"
#include "../options.hpp"

namespace vexacm_tool {

void add_cache_options(CLI::App& command, Cache_settings& settings) {
    add_text(command, "--cache", settings.directory, "Folder that keeps results for the next run")
        ->type_name("DIR");
    // A screen has 24 lines.
    CLI::App* const hidden = command.add_option_group("size of the cache");
    hidden->group("");
    add_number(*hidden, "--cache-size", settings.megabytes, "What it may take; 1024 without it")
        ->type_name("MB");
}

void check(const Cache_settings& settings) {
    if (settings.directory && settings.directory->empty())
        throw Failure{Exit_status::wrong_use, "--cache takes a directory"};
}

} // namespace vexacm_tool
