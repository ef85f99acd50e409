// SPDX-License-Identifier: MIT
#include "../commands.hpp"
#include "../compilers.hpp"
#include "../options.hpp"
#include "../streams.hpp"
#include "contents.hpp"
#include "entry.hpp"
#include "folder.hpp"
#include "limit.hpp"

#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>

namespace vexacm_tool {

namespace {

struct Cache_options {
    std::string action;
    std::string directory;
    unsigned int megabytes = 1024;
    bool json = false;
};

void print(const Contents& contents, bool json) {
    const std::uint64_t bytes = contents.blocks() * BLOCK_SIZE;
    if (json)
        return write_standard_output(to_text({{"entries", contents.entries()},
                                              {"bytes", bytes},
                                              {"unfinished", contents.unfinished()}}));
    write_standard_output("entries: " + std::to_string(contents.entries()) +
                          "\nbytes: " + std::to_string(bytes) +
                          "\nunfinished: " + std::to_string(contents.unfinished()) + '\n');
}

Exit_status cache(const Cache_options& options) {
    const std::string folder = existing_cache_folder(options.directory);
    Contents contents(folder);
    if (options.action == "trim")
        contents.trim(blocks_of(std::uint64_t{options.megabytes} << 20));
    else if (options.action == "clear")
        contents.clear();
    if (options.action != "info")
        forget_blocks(folder);
    print(contents, options.json);
    if (contents.error() != 0)
        throw Failure{Exit_status::input_output, "cannot remove everything from the cache in '" +
                                                     options.directory +
                                                     "': " + std::strerror(contents.error())};
    return Exit_status::done;
}

} // namespace

Command add_cache(CLI::App& tool) {
    const auto options = std::make_shared<Cache_options>();
    CLI::App* const command = tool.add_subcommand("cache", "Look at, trim or clear a cache");
    command
        ->add_option("ACTION", options->action,
                     "info, trim: remove what was not used for\nlongest, or clear: remove all")
        ->required()
        ->type_name("")
        ->check(one_of({"info", "trim", "clear"}));
    command->add_option("DIR", options->directory, "The folder that --cache named")
        ->required()
        ->type_name("");
    const CLI::Option* const size = add_number(*command, "--cache-size", options->megabytes,
                                               "What trim leaves at most; 1024 without it")
                                        ->type_name("MB");
    command->add_flag("--json", options->json, "Print an object");
    return {command, [options, size](const auto&) {
                if (size->count() > 0 && options->action != "trim")
                    throw Failure{Exit_status::wrong_use, "--cache-size is for trim"};
                return cache(*options);
            }};
}

} // namespace vexacm_tool
