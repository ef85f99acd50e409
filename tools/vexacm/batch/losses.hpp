// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <vector>

namespace vexacm_tool {

/// Which compilers are given up: those that cost a number of workers.
///
/// Of a compiler that is given up, every job counts as not run that comes, in
/// job order, after the one that cost the last of that number. Which those are
/// does not depend on the order in which jobs ended: earlier jobs are all run,
/// and what later ones gave is not used.
class Losses {
public:
    /// After how many; 0 is never.
    explicit Losses(std::size_t limit) : limit_(limit) {}

    /// A job of this compiler cost a worker.
    void add(unsigned int compiler, std::size_t job);

    /// Whether it counts as not run, whatever it gave.
    bool given_up(unsigned int compiler, std::size_t job) const;

    /// Whether that cannot change any more, when of the compiler's jobs before it
    /// this many have not ended.
    bool settled(unsigned int compiler, std::size_t job, std::size_t unfinished_before) const;

private:
    const std::vector<std::size_t>& of(unsigned int compiler) const;

    std::size_t limit_;
    std::map<unsigned int, std::vector<std::size_t>> jobs_; ///< in job order
};

} // namespace vexacm_tool
