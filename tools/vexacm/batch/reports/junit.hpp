// SPDX-License-Identifier: MIT
#pragma once

#include "../result.hpp"

#include <iosfwd>

namespace vexacm_tool {

/// JUnit's XML: a suite for each compiler, a case for each source.
void write_junit(const Result_source& results, std::ostream& out);

} // namespace vexacm_tool
