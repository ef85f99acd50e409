// SPDX-License-Identifier: MIT
#include "resume.hpp"

#include "result_lines.hpp"

#include <filesystem>

namespace vexacm_tool {

namespace {

// No compiler does that to itself: somebody killed the worker, or the system did
// for want of memory.
bool was_killed(const Result& result) {
    return result.outcome == Outcome::crashed && result.detail.rfind("killed by signal 9 ", 0) == 0;
}

bool binary_is_there(const Result& result, const Output_names& outputs) {
    std::error_code missing;
    return result.output == outputs.file(result.job) &&
           std::filesystem::file_size(*result.output, missing) == result.binary_size;
}

} // namespace

void take_done_jobs(const std::string& file, const Jobs& jobs, const Output_names* outputs,
                    Results& results) {
    read_results(file, [&](Result result) {
        if (result.jobs != jobs.count() || result.run != jobs.run())
            throw Failure{Exit_status::input_output,
                          "cannot resume '" + file + "': it is of another run"};
        if (!jobs.shard().has(result.job) || !stands(result.outcome) || was_killed(result))
            return;
        if (outputs != nullptr && result.outcome == Outcome::compiled &&
            !binary_is_there(result, *outputs))
            return;
        static_cast<Job_head&>(result) = jobs.head(result.job);
        const std::string line = to_line(result);
        if (results.outcome(result.job) == Outcome::not_run)
            results.put(result.job, result.outcome, line);
        else if (results.spool().line(result.job) != line)
            throw Failure{Exit_status::input_output, two_results(result.job, file, file)};
    });
}

} // namespace vexacm_tool
