// SPDX-License-Identifier: MIT
#pragma once

#include "../cache/cache.hpp"
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
    Cache* cache;             ///< null: none; it has read the plug-ins
};

/// The life of a worker: runs the jobs whose numbers come on the connection and
/// sends back their results, in that order, until the connection ends.
[[noreturn]] void work(const Work& work, const Capture& capture, int connection);

} // namespace vexacm_tool
