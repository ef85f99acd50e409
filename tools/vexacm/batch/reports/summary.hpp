// SPDX-License-Identifier: MIT
#pragma once

#include "../result.hpp"

#include <iosfwd>

namespace vexacm_tool {

/// For people at a terminal: what failed, source by source; the matrix of
/// sources by compilers; how many jobs ended in which way.
void write_summary(const Result_source& results, std::ostream& out);

} // namespace vexacm_tool
