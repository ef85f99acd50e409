// SPDX-License-Identifier: MIT
#pragma once

#include "jobs.hpp"
#include "spool.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

namespace vexacm_tool {

/// What a run gave: keeps the results, counts them, and prints their lines.
class Results {
public:
    enum class Print { nothing, as_they_end, in_job_order };

    Results(const Jobs& jobs, Print print);

    /// A job has ended.
    void put(std::size_t job, Outcome outcome, std::string_view line);
    void put(const Result& result) { put(result.job, result.outcome, to_line(result)); }

    /// Its result stands. Prints it, or all that are next in job order.
    void settle(std::size_t job);
    /// Of a job without a result, that it was not run.
    Outcome outcome(std::size_t job) const { return outcomes_[job]; }
    bool is_settled(std::size_t job) const { return is_settled_[job]; }

    std::size_t failed_count() const { return failed_count_; }
    Exit_status exit_status() const { return exit_status_; }
    const Spool& spool() const { return spool_; }

private:
    const Jobs& jobs_;
    Spool spool_;
    Print print_;
    std::vector<Outcome> outcomes_;
    std::vector<bool> is_settled_;
    std::size_t first_unprinted_; ///< in job order
    std::size_t failed_count_ = 0;
    Exit_status exit_status_ = Exit_status::done;
};

} // namespace vexacm_tool
