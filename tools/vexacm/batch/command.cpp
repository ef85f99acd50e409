// SPDX-License-Identifier: MIT
#include "../cache/options.hpp"
#include "../commands.hpp"
#include "../options.hpp"
#include "batch.hpp"

#include <memory>

namespace vexacm_tool {

namespace {

struct Batch_options {
    Batch batch;
    std::vector<std::string> files;
    std::optional<std::string> manifest;
    std::vector<std::string> kernels;
    std::optional<std::string> shard;
};

void check(const Batch& batch) {
    if (batch.workers == 0)
        throw Failure{Exit_status::wrong_use, "-j takes at least 1"};
    if (!(batch.timeout > 0 && batch.timeout <= 1e9))
        throw Failure{Exit_status::wrong_use, "--timeout takes more than 0 seconds"};
    if (batch.ordered && !batch.json)
        throw Failure{Exit_status::wrong_use, "--ordered is for --json"};
    if (batch.outputs && batch.outputs->empty())
        throw Failure{Exit_status::wrong_use, "--outputs takes a directory"};
    check(batch.cache);
    check_folders(batch.reports);
}

Exit_status batch(const Batch_options& options, const std::optional<std::string>& plugins) {
    Batch batch = options.batch;
    check(batch);
    if (options.shard)
        batch.shard = shard_of(*options.shard);
    batch.sources = named_sources(options.files, options.manifest, options.kernels);
    return run_batch(std::move(batch), plugins);
}

} // namespace

Command add_batch(CLI::App& tool) {
    const auto options = std::make_shared<Batch_options>();
    Batch& settings = options->batch;
    CLI::App* const command =
        tool.add_subcommand("batch", "Compile many sources with all compilers that pass");
    command->add_option("FILE", options->files, "Sources, @LIST; filters, -D, ... as of compile")
        ->type_name("");
    add_hidden_filters(*command, settings.filters);
    // As of compile too, and a screen has 24 lines.
    CLI::App* const hidden = command->add_option_group("hidden");
    hidden->group("");
    hidden->add_option("-D", settings.defines, "Definition for the preprocessor; repeatable")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    hidden->add_option("--kernel", options->kernels, "Kernel to build; repeatable")
        ->type_name("NAME")
        ->allow_extra_args(false);
    hidden->add_flag("--prerotate", settings.prerotate, "Pre-rotate the shaders' output");
    add_cache_options(*hidden, settings.cache);
    add_text(*command, "--manifest", options->manifest, "Sources with their own options, in JSON")
        ->type_name("JSON");
    add_number(*command, "-j", settings.workers, "Workers; without it, one for each processor");
    command->add_option("--timeout", settings.timeout, "What a job may take; 60 without it")
        ->type_name("SECONDS");
    add_number(*command, "--memory-limit", settings.memory_limit,
               "What a worker may take; no limit without it")
        ->type_name("MB");
    add_number(*command, "--give-up-after", settings.give_up_after,
               "Workers that a compiler may cost; 3 without it");
    command->add_flag("--json", settings.json, "Print an object a line, as jobs end");
    command->add_flag("--ordered", settings.ordered, "Print them in job order");
    add_report_files(*command, settings.reports);
    add_text(*command, "--outputs", settings.outputs, "Directory for the binaries")
        ->type_name("DIR");
    add_text(*command, "--shard", options->shard, "Run only the I-th of N parts of the jobs")
        ->type_name("I/N");
    add_text(*command, "--resume", settings.resume, "Lines of --json; run what they lack")
        ->type_name("FILE");
    command->add_flag("--dry-run", settings.dry_run, "Print the jobs, an object a line");
    return {command, [options](const auto& plugins) { return batch(*options, plugins); }};
}

} // namespace vexacm_tool
