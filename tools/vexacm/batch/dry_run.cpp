// SPDX-License-Identifier: MIT
#include "dry_run.hpp"

#include "../plugin_files.hpp"
#include "../streams.hpp"

#include <map>
#include <ostream>

namespace vexacm_tool {

void print_jobs_to_do(const Jobs& jobs, const Output_names* outputs, const Results& results,
                      const std::string& plugin_directory) {
    std::map<unsigned int, std::vector<std::string>> plugins;
    write_standard_output([&](std::ostream& out) {
        for (std::size_t job = jobs.first(); job < jobs.count(); job = jobs.next(job)) {
            if (results.outcome(job) != Outcome::not_run)
                continue;
            const Compiler& compiler = jobs.compiler(job);
            const auto [files, is_new] = plugins.try_emplace(compiler.id);
            if (is_new)
                files->second = plugin_files(plugin_directory, compiler);
            out << to_line(
                Planned_job{jobs.head(job), files->second,
                            outputs != nullptr ? std::optional(outputs->file(job)) : std::nullopt});
        }
    });
}

} // namespace vexacm_tool
