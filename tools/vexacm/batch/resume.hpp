// SPDX-License-Identifier: MIT
#pragma once

#include "jobs.hpp"
#include "outputs.hpp"
#include "results.hpp"

#include <string>

namespace vexacm_tool {

/// Takes from a file of lines what an earlier attempt at the same run has done of
/// these jobs. Not done are those whose worker was killed, and those whose binaries
/// are not where they were written, `outputs` being where they go. Throws Failure
/// for another run's.
void take_done_jobs(const std::string& file, const Jobs& jobs, const Output_names* outputs,
                    Results& results);

} // namespace vexacm_tool
