// SPDX-License-Identifier: MIT
#pragma once

#include "../result.hpp"

#include <iosfwd>

namespace vexacm_tool {

/// One page that needs nothing else: the matrix, and with each cell what its
/// job gave, beside the lines of the source. Sources are read as they are now.
void write_html(const Result_source& results, std::ostream& out);

} // namespace vexacm_tool
