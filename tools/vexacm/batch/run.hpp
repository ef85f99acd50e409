// SPDX-License-Identifier: MIT
#pragma once

#include "progress.hpp"
#include "results.hpp"
#include "seconds.hpp"
#include "worker.hpp"

#include <cstddef>

namespace vexacm_tool {

struct Run_limits {
    std::size_t workers;
    Seconds timeout;
    std::size_t give_up_after;
};

/// Runs all jobs that have no result yet, or those that there is time for until an
/// interrupt is noted; the rest counts as not run. When it returns, every job has
/// its result. What compilers printed when they were asked for their extensions is
/// then told on standard error. Keeps the cache, if there is one, within its limit.
/// Returns how many results came from it.
std::size_t run_jobs(const Work& work, const Run_limits& limits, Results& results,
                     Progress& progress);

} // namespace vexacm_tool
