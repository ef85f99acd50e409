// SPDX-License-Identifier: MIT
#pragma once

#include "jobs.hpp"
#include "losses.hpp"
#include "result.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <utility>

namespace vexacm_tool {

/// Which job is next, and which results stand for good.
class Schedule {
public:
    /// A job's result stands: what it gave, or, when its compiler is given up,
    /// that it counts as not run. Called once for each job.
    using Settled = std::function<void(std::size_t job, bool given_up)>;

    Schedule(const Jobs& jobs, std::size_t give_up_after, Settled settled);

    /// The next job to run. Those of a compiler that is given up are settled on
    /// the way.
    std::optional<std::size_t> next();

    /// A job that next() gave was not begun: it comes again.
    void give_back(std::size_t job);

    /// A job that next() gave has ended.
    void finish(std::size_t job, bool cost_a_worker);

    /// There will be no other: settles the jobs that have ended.
    void stop();

    bool is_done() const { return settled_count_ == jobs_.shard().count(jobs_.count()); }
    std::size_t settled_count() const { return settled_count_; }

private:
    // Compiler and job, so that the jobs of a compiler are neighbours.
    using Job = std::pair<unsigned int, std::size_t>;

    void settle(std::size_t job, bool given_up);
    void settle_those_of(unsigned int compiler);
    std::size_t unfinished_before(const Job& job) const;

    const Jobs& jobs_;
    Losses losses_;
    Settled settled_;
    std::size_t first_untouched_;
    std::size_t settled_count_ = 0;
    std::set<std::size_t> given_back_;
    std::set<Job> unfinished_; ///< given out or given back
    std::set<Job> ended_;      ///< and not settled
};

} // namespace vexacm_tool
