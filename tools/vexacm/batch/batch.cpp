// SPDX-License-Identifier: MIT
#include "batch.hpp"

#include "../no_match.hpp"
#include "../plugin_directory.hpp"
#include "../stage.hpp"
#include "../streams.hpp"
#include "dry_run.hpp"
#include "guard.hpp"
#include "identity.hpp"
#include "interrupt.hpp"
#include "reports/summary.hpp"
#include "resume.hpp"
#include "run.hpp"

#include <algorithm>
#include <ostream>
#include <sched.h>

namespace vexacm_tool {

namespace {

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

Choice choose(const Batch& batch, const std::string& directory) {
    const vexacm::Filters& filters = batch.filters;
    Choice choice;
    for (const std::string api : {"openglessl", "opencl"}) {
        const auto wants = [&](const Source& source) { return api_of_stage(source.stage) == api; };
        const auto count = std::count_if(batch.sources.begin(), batch.sources.end(), wants);
        if (count == 0)
            continue;
        if (filters.api.value_or(api) == api) {
            const Compiler_ids ids(with_api(api, filters));
            for (const unsigned int id : ids) {
                choice.compilers.emplace_back(id);
                if (!batch.all_compilers)
                    break;
            }
            if (!ids.empty())
                continue;
        }
        choice.status = Exit_status::no_compiler;
        tell("no compiler matches for " + std::to_string(count) + " of " +
             std::to_string(batch.sources.size()) +
             " sources: " + why_none_for(api, filters, directory));
    }
    return choice;
}

Exit_status compile_all(Batch batch, const std::string& directory) {
    const Seconds timeout(batch.timeout);
    std::optional<Cache> cache;
    if (batch.cache.directory && !batch.dry_run)
        cache.emplace(batch.cache, directory);
    try_plugins(directory, {timeout, batch.memory_limit});
    if (Interrupt::noted())
        return Exit_status::interrupted;
    const vexacm::Library library = open_library(directory);
    const Choice choice = choose(batch, directory);
    if (choice.compilers.empty())
        return choice.status;
    const Identity identity(batch, choice.compilers, directory);
    if (Interrupt::noted())
        return Exit_status::interrupted;
    const Jobs jobs(std::move(batch.sources), choice.compilers, std::move(batch.defines),
                    {identity.run(), batch.give_up_after}, batch.shard);

    // Before there are workers, which then all know them.
    if (cache)
        for (const Compiler& compiler : choice.compilers)
            cache->read_plugin(compiler);

    std::optional<Output_names> outputs;
    if (batch.outputs)
        outputs.emplace(*batch.outputs, jobs);
    using Print = Results::Print;
    Results results(jobs, !batch.json     ? Print::nothing
                          : batch.ordered ? Print::in_job_order
                                          : Print::as_they_end);
    const Work work{jobs, outputs ? &*outputs : nullptr, batch.prerotate, batch.memory_limit,
                    cache ? &*cache : nullptr};
    if (batch.resume)
        take_done_jobs(*batch.resume, jobs, work.outputs, results);
    if (batch.dry_run) {
        print_jobs_to_do(jobs, work.outputs, results, directory);
        return choice.status;
    }
    const std::size_t count = jobs.shard().count(jobs.count());
    Progress progress(has_room_for_progress(batch.json), count);
    const std::size_t cached =
        run_jobs(work, {batch.workers, timeout, batch.give_up_after}, results, progress);
    const Exit_status reported = write_reports(batch.reports, results.spool());
    if (!batch.json)
        write_standard_output([&](std::ostream& out) {
            write_summary(results.spool(), out);
            if (cache)
                out << "cache: " << cached << " of " << count
                    << (count == 1 ? " job\n" : " jobs\n");
        });
    return std::max({choice.status, results.exit_status(), reported});
}

} // namespace

unsigned int processors() {
    cpu_set_t usable;
    return ::sched_getaffinity(0, sizeof usable, &usable) == 0
               ? static_cast<unsigned int>(CPU_COUNT(&usable))
               : 1;
}

Exit_status run_batch(Batch batch, const std::optional<std::string>& plugins) {
    const std::string directory = plugin_directory(plugins);
    keep_plugins_off_standard_output();
    const Interrupt interrupt;
    Exit_status status = Exit_status::done;
    try {
        status = compile_all(std::move(batch), directory);
    } catch (const Failure&) {
        // A reader that the same Ctrl-C ended is no failure.
        if (!Interrupt::noted())
            throw;
    }
    return Interrupt::noted() ? Exit_status::interrupted : status;
}

} // namespace vexacm_tool
