// SPDX-License-Identifier: MIT
#include "../commands.hpp"
#include "../no_match.hpp"
#include "../options.hpp"
#include "../plugin_directory.hpp"
#include "../stage.hpp"
#include "../streams.hpp"
#include "guard.hpp"
#include "interrupt.hpp"
#include "reports/html.hpp"
#include "reports/junit.hpp"
#include "reports/sarif.hpp"
#include "reports/summary.hpp"
#include "run.hpp"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sched.h>

namespace vexacm_tool {

namespace {

unsigned int processors() {
    cpu_set_t usable;
    return ::sched_getaffinity(0, sizeof usable, &usable) == 0
               ? static_cast<unsigned int>(CPU_COUNT(&usable))
               : 1;
}

struct Batch_options {
    std::vector<std::string> files;
    std::optional<std::string> manifest;
    vexacm::Filters filters;
    std::vector<std::string> defines;
    std::vector<std::string> kernels;
    bool prerotate = false;
    unsigned int workers = processors();
    double timeout = 60;
    unsigned int memory_limit = 0;
    unsigned int give_up_after = 3;
    bool json = false;
    bool ordered = false;
    std::optional<std::string> sarif;
    std::optional<std::string> junit;
    std::optional<std::string> html;
    std::optional<std::string> outputs;
};

/// What is written of all results, where it is asked for.
struct Report {
    std::optional<std::string> Batch_options::*file;
    void (*write)(const Result_source& results, std::ostream& out);
};

constexpr Report REPORTS[] = {{&Batch_options::sarif, write_sarif},
                              {&Batch_options::junit, write_junit},
                              {&Batch_options::html, write_html}};

void check(const Batch_options& options) {
    if (options.workers == 0)
        throw Failure{Exit_status::wrong_use, "-j takes at least 1"};
    if (!(options.timeout > 0 && options.timeout <= 1e9))
        throw Failure{Exit_status::wrong_use, "--timeout takes more than 0 seconds"};
    if (options.ordered && !options.json)
        throw Failure{Exit_status::wrong_use, "--ordered is for --json"};
    if (options.outputs && options.outputs->empty())
        throw Failure{Exit_status::wrong_use, "--outputs takes a directory"};
    // A run may take hours: a report that has no folder is found out before.
    for (const Report& report : REPORTS) {
        const std::optional<std::string>& file = options.*report.file;
        if (file && !std::filesystem::is_directory(std::filesystem::absolute(*file).parent_path()))
            throw Failure{Exit_status::input_output,
                          "cannot write " + *file + ": there is no such folder"};
    }
}

// A report that fails does not take the others with it.
Exit_status write_reports(const Batch_options& options, const Result_source& results) {
    Exit_status status = Exit_status::done;
    for (const Report& report : REPORTS)
        try {
            if (const std::optional<std::string>& file = options.*report.file)
                write_file_atomically(*file,
                                      [&](std::ostream& out) { report.write(results, out); });
        } catch (const Failure& failure) {
            tell(failure.what());
            status = failure.status;
        }
    if (!options.json)
        write_standard_output([&](std::ostream& out) { write_summary(results, out); });
    return status;
}

/// The compilers for these sources, and what it means that some find none.
struct Choice {
    std::vector<Compiler> compilers;
    Exit_status status = Exit_status::done;
};

vexacm::Filters with_api(const std::string& api, vexacm::Filters filters) {
    filters.api = api;
    return filters;
}

std::string why_none_for(const std::string& api, const vexacm::Filters& filters,
                         const std::string& directory) {
    if (filters.api.value_or(api) != api)
        return "--api '" + *filters.api + "' is not for them";
    return why_none(with_api(api, filters), directory);
}

Choice choose(const std::vector<Source>& sources, const vexacm::Filters& filters,
              const std::string& directory) {
    Choice choice;
    for (const std::string api : {"openglessl", "opencl"}) {
        const auto wants = [&](const Source& source) { return api_of_stage(source.stage) == api; };
        const auto count = std::count_if(sources.begin(), sources.end(), wants);
        if (count == 0)
            continue;
        if (filters.api.value_or(api) == api) {
            const Compiler_ids ids(with_api(api, filters));
            for (const unsigned int id : ids)
                choice.compilers.emplace_back(id);
            if (!ids.empty())
                continue;
        }
        choice.status = Exit_status::no_compiler;
        tell("no compiler matches for " + std::to_string(count) + " of " +
             std::to_string(sources.size()) + " sources: " + why_none_for(api, filters, directory));
    }
    return choice;
}

Exit_status run_batch(const Batch_options& options, const std::string& directory,
                      std::vector<Source> sources) {
    const Seconds timeout(options.timeout);
    try_plugins(directory, timeout);
    if (Interrupt::noted())
        return Exit_status::interrupted;
    const vexacm::Library library = open_library(directory);
    const Choice choice = choose(sources, options.filters, directory);
    const Jobs jobs(std::move(sources), choice.compilers, options.defines);
    if (jobs.count() == 0)
        return choice.status;

    std::optional<Output_names> outputs;
    if (options.outputs)
        outputs.emplace(*options.outputs, jobs);
    using Print = Results::Print;
    Results results(jobs, !options.json     ? Print::nothing
                          : options.ordered ? Print::in_job_order
                                            : Print::as_they_end);
    Progress progress(has_room_for_progress(options.json), jobs.count());
    run_jobs({jobs, outputs ? &*outputs : nullptr, options.prerotate, options.memory_limit},
             {options.workers, timeout, options.give_up_after}, results, progress);
    return std::max(
        {choice.status, results.exit_status(), write_reports(options, results.spool())});
}

Exit_status batch(const Batch_options& options, const std::optional<std::string>& plugins) {
    check(options);
    std::vector<Source> sources = named_sources(options.files, options.manifest, options.kernels);
    const std::string directory = plugin_directory(plugins);
    keep_plugins_off_standard_output();
    const Interrupt interrupt;
    Exit_status status = Exit_status::done;
    try {
        status = run_batch(options, directory, std::move(sources));
    } catch (const Failure&) {
        // A reader that the same Ctrl-C ended is no failure.
        if (!Interrupt::noted())
            throw;
    }
    return Interrupt::noted() ? Exit_status::interrupted : status;
}

} // namespace

Command add_batch(CLI::App& tool) {
    const auto options = std::make_shared<Batch_options>();
    CLI::App* const command =
        tool.add_subcommand("batch", "Compile many sources with all compilers that pass");
    command
        ->add_option("FILE", options->files, "Sources; @LIST for listed ones; filters as of list")
        ->type_name("");
    // They are the same everywhere, and a screen has 24 lines.
    CLI::App* const filters = command->add_option_group("filters");
    filters->group("");
    add_filters(*filters, options->filters);
    command->add_option("-D", options->defines, "Definition for the preprocessor; repeatable")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    command->add_option("--kernel", options->kernels, "Kernel to build; repeatable")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command->add_flag("--prerotate", options->prerotate, "Pre-rotate the shaders' output");
    add_text(*command, "--manifest", options->manifest, "Sources with their own options, in JSON")
        ->type_name("JSON");
    add_number(*command, "-j", options->workers, "Workers; without it, one for each processor");
    command->add_option("--timeout", options->timeout, "What a job may take; 60 without it")
        ->type_name("SECONDS");
    add_number(*command, "--memory-limit", options->memory_limit,
               "What a worker may take; no limit without it")
        ->type_name("MB");
    add_number(*command, "--give-up-after", options->give_up_after,
               "Workers that a compiler may cost; 3 without it");
    command->add_flag("--json", options->json, "Print an object a line, as jobs end");
    command->add_flag("--ordered", options->ordered, "Print them in job order");
    add_text(*command, "--sarif", options->sarif, "File for the diagnostics, in SARIF 2.1.0")
        ->type_name("FILE");
    add_text(*command, "--junit", options->junit, "File for the jobs as tests, in JUnit's XML")
        ->type_name("FILE");
    add_text(*command, "--html", options->html, "File for a page that shows all")
        ->type_name("FILE");
    add_text(*command, "--outputs", options->outputs, "Directory for the binaries")
        ->type_name("DIR");
    return {command, [options](const auto& plugins) { return batch(*options, plugins); }};
}

} // namespace vexacm_tool
