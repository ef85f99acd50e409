// SPDX-License-Identifier: MIT
#pragma once

#include "jobs.hpp"
#include "outputs.hpp"
#include "results.hpp"

#include <string>

namespace vexacm_tool {

/// Prints a line for each job that has no result yet, in job order. `outputs` is
/// null when no binaries are wanted.
void print_jobs_to_do(const Jobs& jobs, const Output_names* outputs, const Results& results,
                      const std::string& plugin_directory);

} // namespace vexacm_tool
