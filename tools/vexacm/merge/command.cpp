// SPDX-License-Identifier: MIT
#include "../batch/report_files.hpp"
#include "../batch/reports/summary.hpp"
#include "../commands.hpp"
#include "../streams.hpp"
#include "merged.hpp"
#include "missing.hpp"

#include <algorithm>
#include <memory>

namespace vexacm_tool {

namespace {

struct Merge_options {
    std::vector<std::string> shards;
    bool json = false;
    Report_files reports;
};

void write_lines(const Spool& results) {
    write_standard_output([&](std::ostream& out) {
        results.for_each_line([&](const std::string& line) { out << line; });
    });
}

Exit_status merge(const Merge_options& options) {
    check_folders(options.reports);
    Merged merged;
    for (const std::string& shard : options.shards)
        merged.add(shard);
    if (merged.jobs() == 0)
        throw Failure{Exit_status::input_output, "there are no results to merge"};
    merged.settle();
    if (tell_missing(merged))
        return Exit_status::input_output;
    if (options.json)
        write_lines(merged.results());
    const Exit_status reported = write_reports(options.reports, merged.results());
    if (!options.json)
        write_standard_output([&](std::ostream& out) { write_summary(merged.results(), out); });
    return std::max(merged.exit_status(), reported);
}

} // namespace

Command add_merge(CLI::App& tool) {
    const auto options = std::make_shared<Merge_options>();
    CLI::App* const command =
        tool.add_subcommand("merge", "Join what the shards of a batch printed");
    command
        ->add_option("SHARD", options->shards, "Files of lines of --json; - reads standard input")
        ->required()
        ->type_name("");
    command->add_flag("--json", options->json, "Print the lines in job order, and no summary");
    add_report_files(*command, options->reports);
    return {command, [options](const auto&) { return merge(*options); }};
}

} // namespace vexacm_tool
