// SPDX-License-Identifier: MIT
#pragma once

#include "capture.hpp"
#include "jobs.hpp"
#include "outputs.hpp"

#include <cstddef>

namespace vexacm_tool {

/// What every worker knows from its parent, whose memory it has a copy of.
struct Work {
    const Jobs& jobs;
    const Output_names* outputs; ///< null: no binaries
    bool prerotate;
    std::size_t memory_limit; ///< in megabytes, 0: none
};

/// The life of a worker: runs the jobs whose numbers come on the connection and
/// sends back their results, in that order, until the connection ends.
[[noreturn]] void work(const Work& work, const Capture& capture, int connection);

} // namespace vexacm_tool
