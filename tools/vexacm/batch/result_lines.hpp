// SPDX-License-Identifier: MIT
#pragma once

#include "result.hpp"

#include <functional>
#include <string>

namespace vexacm_tool {

/// Visits the results in a file of their lines, or in standard input for "-". A
/// last one that was cut off is none. Throws Failure for any other line that a run
/// does not write.
void read_results(const std::string& file, const std::function<void(Result)>& visit);

} // namespace vexacm_tool
